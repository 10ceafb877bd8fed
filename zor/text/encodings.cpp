// Code page conversions through iconv.
#include "zor/text/encodings.h"

#include <iconv.h>
#include <malloc.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "zor/text/text_result.h"
#include "zor/text/wide_char_escape.h"

namespace {

using ZOR::detail::kReplacementCharacter;

constexpr int kUtf8 = 65001;
constexpr int kOemCodePage = 1;
// What a code page writes for a character it lacks.
constexpr char kDefaultCharacter = '?';
// A null string still gets a buffer of this many bytes.
constexpr std::size_t kSmallestBuffer = 7;

std::string iconvName(int codePage) {
    switch (codePage) {
        case 0:  // the system's ANSI code page
            return "CP1252";
        case kOemCodePage:
            return "CP850";
        case kUtf8:
            return "UTF-8";
        default:
            return "CP" + std::to_string(codePage);
    }
}

// One iconv conversion, closed when the scope ends.
class Conversion {
  public:
    Conversion(const std::string& to, const std::string& from)
        : descriptor(iconv_open(to.c_str(), from.c_str())) {}
    ~Conversion() {
        if (ok()) iconv_close(descriptor);
    }
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;

    bool ok() const { return descriptor != reinterpret_cast<iconv_t>(-1); }

    // Converts as much of the input as it can into `out`; returns false on a sequence it
    // cannot convert, with `in` and `inLeft` at that sequence.
    bool run(const char*& in, std::size_t& inLeft, std::string& out) {
        char chunk[256];
        while (inLeft > 0) {
            char* next = chunk;
            std::size_t room = sizeof chunk;
            char* input = const_cast<char*>(in);  // iconv does not write through it
            const std::size_t result = iconv(descriptor, &input, &inLeft, &next, &room);
            in = input;
            out.append(chunk, static_cast<std::size_t>(next - chunk));
            if (result == static_cast<std::size_t>(-1) && errno != E2BIG) {
                iconv(descriptor, nullptr, nullptr, nullptr, nullptr);  // back to the initial state
                return false;
            }
        }
        return true;
    }

    // Converts one wide unit; false, with `out` unchanged, when the target lacks it.
    bool unit(wchar_t c, std::string& out) {
        const char* in = reinterpret_cast<const char*>(&c);
        std::size_t inLeft = sizeof c;
        std::string bytes;
        if (!run(in, inLeft, bytes)) return false;
        out += bytes;
        return true;
    }

  private:
    iconv_t descriptor;
};

// 8-bit text to wide text. Bytes the code page doesn't define, and a sequence cut off at the
// end, each give U+FFFD.
std::wstring decode(const char* text, int codePage) {
    Conversion conversion("WCHAR_T", iconvName(codePage));
    if (!conversion.ok()) return {};
    const char* in = text;
    std::size_t inLeft = std::strlen(text);
    std::string bytes;
    std::wstring out;
    while (true) {
        const bool done = conversion.run(in, inLeft, bytes);
        out.append(reinterpret_cast<const wchar_t*>(bytes.data()), bytes.size() / sizeof(wchar_t));
        bytes.clear();
        if (done) return out;
        out += kReplacementCharacter;
        ++in;
        --inLeft;
    }
}

// Wide text to 8-bit text. A character the code page lacks travels as its `\U+xxxx` escape,
// or as the default character where it has none (below 0x100). UTF-8 lacks only what isn't a
// character, which it writes as U+FFFD.
std::string encode(const wchar_t* text, int codePage) {
    Conversion conversion(iconvName(codePage), "WCHAR_T");
    if (!conversion.ok()) return {};
    std::string out;
    for (const wchar_t* p = text; *p; ++p) {
        if (conversion.unit(*p, out)) continue;
        if (codePage == kUtf8) {
            out += "\xEF\xBF\xBD";
            continue;
        }
        const std::wstring escape = ZOR::detail::wideCharEscape(*p);
        if (escape.size() == 1) {
            out += kDefaultCharacter;
            continue;
        }
        for (const wchar_t e : escape) {
            if (!conversion.unit(e, out)) out += kDefaultCharacter;
        }
    }
    return out;
}

// The size of an allocation from array new; what the runtime reserved may exceed the request.
std::size_t allocationSize(const char* buffer) {
    return buffer ? malloc_usable_size(const_cast<char*>(buffer)) : 0;
}

}  // namespace

CZorString& CZorString::fromMultiByte(const char* text, int codePage) {
    if (!text) {
        setNull();
        return *this;
    }
    ZOR::detail::assignResult(*this, decode(text, codePage));
    if (codePage != kUtf8) unEscapeWideChar();
    return *this;
}

char* CZorString::toMultiByte(char*& target, int codePage) const {
    const std::string bytes = isNull() ? std::string() : encode(*this, codePage);
    const std::size_t needed = isNull() ? kSmallestBuffer : bytes.size() + 1;
    if (allocationSize(target) < needed) {
        delete[] target;
        target = nullptr;  // a failing new below leaves no dangling pointer behind
        target = new char[needed];
    }
    std::memcpy(target, bytes.c_str(), bytes.size() + 1);
    return target;
}

namespace ZOR {

wchar_t* dosToWin(wchar_t* text) {
    if (!text) return text;
    Conversion conversion("WCHAR_T", iconvName(kOemCodePage));
    for (wchar_t* p = text; *p; ++p) {
        const char byte = static_cast<char>(*p & 0xFF);
        const char* in = &byte;
        std::size_t inLeft = 1;
        std::string wide;
        // The OEM code page defines all 256 bytes; a byte 0 (from a unit such as 0x100) would
        // end the text and stays as it was.
        if (byte != 0 && conversion.ok() && conversion.run(in, inLeft, wide) &&
            wide.size() == sizeof(wchar_t)) {
            std::memcpy(p, wide.data(), sizeof(wchar_t));
        }
    }
    return text;
}

wchar_t* winToDos(wchar_t* text) {
    if (!text) return text;
    Conversion conversion(iconvName(kOemCodePage), "WCHAR_T");
    for (wchar_t* p = text; *p; ++p) {
        std::string byte;
        if (conversion.ok() && conversion.unit(*p, byte) && byte.size() == 1) {
            *p = static_cast<wchar_t>(static_cast<unsigned char>(byte[0]));
        } else {
            *p = kDefaultCharacter;
        }
    }
    return text;
}

}  // namespace ZOR
