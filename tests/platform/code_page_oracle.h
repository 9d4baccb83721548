// The conversions of the system under the tests: the system's own on Windows, else those of the C library.
// Only an exact one counts; empty when there is none.
#ifndef FIELDSCAN_TESTS_PLATFORM_CODE_PAGE_ORACLE_H
#define FIELDSCAN_TESTS_PLATFORM_CODE_PAGE_ORACLE_H

#include <string>

#if defined(_WIN32)

#include "platform/windows/api.h"

class Oracle {
public:
    Oracle(unsigned int page, const char*) : m_page(page) {}
    bool usable() const { return IsValidCodePage(m_page) != 0; }

    std::u16string read(const std::string& bytes) const {
        wchar_t units[8];
        const int count = MultiByteToWideChar(m_page, MB_ERR_INVALID_CHARS, bytes.data(),
                                              static_cast<int>(bytes.size()), units, 8);
        return {units, units + count};
    }
    std::string write(char16_t unit) const {
        const wchar_t wide = unit;
        char bytes[8];
        BOOL lacking = FALSE;
        const int count =
            WideCharToMultiByte(m_page, WC_NO_BEST_FIT_CHARS, &wide, 1, bytes, 8, nullptr, &lacking);
        return lacking ? "" : std::string(bytes, static_cast<std::size_t>(count));
    }

private:
    unsigned int m_page;
};

#else

#include <iconv.h>

class Oracle {
public:
    Oracle(unsigned int, const char* name)
        : m_reader(iconv_open("UTF-16BE", name)), m_writer(iconv_open(name, "UTF-16BE")) {}
    ~Oracle() {
        for (const iconv_t converter : {m_reader, m_writer})
            if (converter != kNone)
                iconv_close(converter);
    }
    bool usable() const { return m_reader != kNone && m_writer != kNone; }

    std::u16string read(const std::string& bytes) const {
        const std::string pairs = convert(m_reader, bytes);
        std::u16string text;
        for (std::size_t i = 0; i < pairs.size(); i += 2)
            text += static_cast<char16_t>(static_cast<unsigned char>(pairs[i]) << 8 |
                                          static_cast<unsigned char>(pairs[i + 1]));
        return text;
    }
    std::string write(char16_t unit) const {
        return convert(m_writer, {static_cast<char>(unit >> 8), static_cast<char>(unit & 0xFF)});
    }

private:
    static std::string convert(iconv_t converter, std::string from) {
        char to[16];
        char *input = &from[0], *output = to;
        std::size_t left = from.size(), room = sizeof to;
        iconv(converter, nullptr, nullptr, nullptr, nullptr);
        return iconv(converter, &input, &left, &output, &room) == 0 ? std::string(to, output) : "";
    }

    const iconv_t kNone = reinterpret_cast<iconv_t>(-1);
    iconv_t m_reader, m_writer;
};

#endif

#endif
