// What tests set up in the system around the library: environment, code page of files, registry, disk.
#ifndef FIELDSCAN_TESTS_ENVIRONMENT_H
#define FIELDSCAN_TESTS_ENVIRONMENT_H

#include <fieldscan/framework/string.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/print_text.h"

#if defined(_WIN32)

#include "platform/windows/api.h"

inline unsigned int ansiPage() { return GetACP(); }

// Whether `page` is the code page of files from here on; the system decides that, not the test.
inline bool usePage(unsigned int page) { return ansiPage() == page; }

inline void clearEnvironment() { RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"System\\StorageManager"); }

// Gives the cards of a profile their folder in the registry. `folder` is a test's own.
inline void setCardFolder(const std::filesystem::path&, const std::string& profile,
                          const std::string& value) {
    const std::wstring key = L"System\\StorageManager\\Profiles\\" + std::filesystem::path(profile).wstring();
    const std::wstring text = std::filesystem::path(value).wstring();
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), L"Folder", REG_SZ, text.c_str(),
                    static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

// Where the paths of the device begin.
inline std::filesystem::path deviceRoot(const std::filesystem::path&) {
    return std::filesystem::current_path().root_path();
}

inline std::filesystem::path runningProgram() {
    wchar_t path[MAX_PATH];
    return std::wstring(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
}

#else

#include <fstream>

inline unsigned int ansiPage() {
    const char* page = std::getenv("FIELDSCAN_ANSI_CODEPAGE");
    return page ? static_cast<unsigned int>(std::atoi(page)) : 65001;
}

inline bool usePage(unsigned int page) {
    return setenv("FIELDSCAN_ANSI_CODEPAGE", std::to_string(page).c_str(), 1) == 0;
}

inline void clearEnvironment() {
    for (const char* variable : {"FIELDSCAN_ROOT", "FIELDSCAN_REGISTRY", "FIELDSCAN_ANSI_CODEPAGE"})
        unsetenv(variable);
}

inline void setCardFolder(const std::filesystem::path& folder, const std::string& profile,
                          const std::string& value) {
    setenv("FIELDSCAN_REGISTRY", (folder / "registry").c_str(), 1);
    std::ofstream(folder / "registry", std::ios::app)
        << "[HKEY_LOCAL_MACHINE\\System\\StorageManager\\Profiles\\" << profile << "]\n\"Folder\"=\"" << value
        << "\"\n";
}

inline std::filesystem::path deviceRoot(const std::filesystem::path& folder) {
    setenv("FIELDSCAN_ROOT", folder.c_str(), 1);
    return folder;
}

inline std::filesystem::path runningProgram() { return std::filesystem::read_symlink("/proc/self/exe"); }

#endif

// U+5CB3, a kanji, in the code page of files; "?" where that has none.
inline std::string kanji() {
    return ansiPage() == 932 ? "\x8A\x78" : ansiPage() == 65001 ? "\xE5\xB2\xB3" : "?";
}

#endif
