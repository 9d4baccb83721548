// The registry of the device as a file: a text export (.reg), named by the environment variable
// FIELDSCAN_REGISTRY, in UTF-16LE or UTF-8 with a byte order mark, or in the ANSI code page.
//
//   Windows Registry Editor Version 5.00
//
//   [HKEY_LOCAL_MACHINE\System\StorageManager\Profiles\SDMMC]
//   "Folder"="Storage Card"
//
// Only text values are read. Keys and names are compared without regard to the case of ASCII letters; of two
// values with one name the last counts.
#include <cstdlib>
#include <string>

#include "platform/framework/line_text.h"
#include "platform/system.h"

namespace fieldscan {
namespace system {

namespace {

const char kRoot[] = "HKEY_LOCAL_MACHINE\\";

// The whole file; empty when it cannot be read to its end.
CString contents(CFile& file) {
    std::string bytes;
    for (std::string line; readLine(file, line);)
        bytes += line;
    CString text;
    if (file.HasReadFailed())
        return text;
    if (bytes.compare(0, 2, "\xFF\xFE") == 0) {
        for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
            const unsigned low = static_cast<unsigned char>(bytes[i]);
            const unsigned high = static_cast<unsigned char>(bytes[i + 1]);
            text += static_cast<unsigned short>(low | high << 8);
        }
    } else if (bytes.compare(0, 3, "\xEF\xBB\xBF") == 0) {
        appendWide(kUtf8, bytes.data() + 3, bytes.size() - 3, text);
    } else {
        appendWide(ansiCodePage(), bytes.data(), bytes.size(), text);
    }
    return text;
}

// Reads the quoted text at `position`, where `\` precedes a literal unit, and moves `position` past its
// closing quote; false when it has none.
bool readQuoted(const CString& line, int& position, CString& text) {
    text.Empty();
    if (line[position] != '"')
        return false;
    for (++position; position < line.GetLength(); ++position) {
        unsigned short unit = line[position];
        if (unit == '"') {
            ++position;
            return true;
        }
        if (unit == '\\')
            unit = line[++position];
        text += unit;
    }
    return false;
}

}  // namespace

bool registryText(const CString& key, const CString& name, CString& text) {
    const char* path = std::getenv("FIELDSCAN_REGISTRY");
    CFile file;
    if (!path)
        return false;
    CString widePath;
    appendWide(kUtf8, path, std::char_traits<char>::length(path), widePath);
    if (!file.Open(widePath, CFile::modeRead))
        return false;

    const CString all = contents(file);
    const CString section = CString('[') + CString(kRoot) + key + CString(']');
    bool inSection = false;
    bool found = false;
    CString valueName, value;
    for (int start = 0; start < all.GetLength();) {
        int end = all.Find('\n', start);
        if (end < 0)
            end = all.GetLength();
        const CString line = all.Mid(start, end - start).Trim();
        start = end + 1;
        int position = 0;
        if (line[0] == '[')
            inSection = line.CompareNoCase(section) == 0;
        else if (inSection && readQuoted(line, position, valueName) && valueName.CompareNoCase(name) == 0 &&
                 line[position] == '=' && readQuoted(line, ++position, value)) {
            text = value;
            found = true;
        }
    }
    return found;
}

}  // namespace system
}  // namespace fieldscan
