// Backslash escapes, the `\U+xxxx` notation, quoting and the drawing-text markers.
#include "zor/text/escapes.h"

#include <cwctype>
#include <string>

#include "zor/text/number_text.h"
#include "zor/text/text_result.h"
#include "zor/text/wide_char_escape.h"

namespace {

using ZOR::detail::assignResult;
using ZOR::detail::kReplacementCharacter;

// The control codes and the two characters that `escape` writes with a backslash, and the
// letter that follows the backslash.
struct BackslashEscape {
    wchar_t unit;
    wchar_t letter;
};
constexpr BackslashEscape kBackslashEscapes[] = {
    {7, L'a'},  {8, L'b'},  {9, L't'},  {10, L'n'},   {11, L'v'},
    {12, L'f'}, {13, L'r'}, {27, L'e'}, {L'"', L'"'}, {L'\\', L'\\'},
};

bool isHighSurrogate(wchar_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(wchar_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

bool startsWideCharEscape(const wchar_t* p) {
    return p[0] == L'\\' && (p[1] == L'U' || p[1] == L'u') && p[2] == L'+';
}

// Reads the escape at `p` (which startsWideCharEscape): up to four units behind "\U+", fewer
// where the text ends. `p` moves behind what was read. The reader takes a sign as well
// ("\U+-001"); the value is cut to the 16 bits that four digits can hold, so that no such
// text makes a unit outside the range of characters.
wchar_t readWideCharEscape(const wchar_t*& p) {
    p += 3;
    wchar_t digits[5] = {};
    for (int i = 0; i < 4 && *p; ++i) digits[i] = *p++;
    return static_cast<wchar_t>(ZOR::xtol(digits) & 0xFFFF);
}

void appendHex4(std::wstring& out, unsigned long value) {
    wchar_t hex[16];
    out += L"\\U+";
    out += ZOR::ltox(hex, value, 4);
}

}  // namespace

namespace ZOR::detail {

std::wstring wideCharEscape(wchar_t unit) {
    const auto value = static_cast<unsigned long>(unit);
    std::wstring out;
    if (value <= 0xFF) {
        out += unit;
    } else if (value <= 0xFFFF) {
        appendHex4(out, value);
    } else if (value <= 0x10FFFF) {
        appendHex4(out, 0xD800 + ((value - 0x10000) >> 10));
        appendHex4(out, 0xDC00 + ((value - 0x10000) & 0x3FF));
    } else {
        // Not a character at all; it travels as the replacement character.
        appendHex4(out, kReplacementCharacter);
    }
    return out;
}

std::wstring wideCharUnescape(const wchar_t* text) {
    std::wstring out;
    const wchar_t* p = text;
    while (*p) {
        if (!startsWideCharEscape(p)) {
            out += *p++;
            continue;
        }
        wchar_t unit = readWideCharEscape(p);
        if (isHighSurrogate(unit) && startsWideCharEscape(p)) {
            const wchar_t* next = p;
            const wchar_t low = readWideCharEscape(next);
            if (isLowSurrogate(low)) {
                unit = static_cast<wchar_t>(0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00));
                p = next;
            }
        }
        // An escape of 0 (or without digits) cannot stand in a text and yields nothing.
        if (unit != 0) out += unit;
    }
    return out;
}

}  // namespace ZOR::detail

CZorString& CZorString::escape() {
    if (isNull()) return *this;
    std::wstring out;
    for (const wchar_t* p = *this; *p; ++p) {
        wchar_t letter = 0;
        for (const BackslashEscape& e : kBackslashEscapes) {
            if (e.unit == *p) letter = e.letter;
        }
        if (letter != 0) {
            out += L'\\';
            out += letter;
        } else {
            out += *p;
        }
    }
    assignResult(*this, out);
    return *this;
}

CZorString& CZorString::unEscape() {
    std::wstring out;
    if (!isNull()) {
        for (const wchar_t* p = *this; *p; ++p) {
            if (*p != L'\\') {
                out += *p;
                continue;
            }
            ++p;
            if (*p == 0) break;  // a lone backslash at the end goes away
            wchar_t unit = *p;
            for (const BackslashEscape& e : kBackslashEscapes) {
                if (e.letter == *p) unit = e.unit;
            }
            out += unit;
        }
    }
    assignResult(*this, out);
    return *this;
}

CZorString& CZorString::escapeWideChar() {
    if (isNull()) return *this;
    std::wstring out;
    for (const wchar_t* p = *this; *p; ++p) out += ZOR::detail::wideCharEscape(*p);
    assignResult(*this, out);
    return *this;
}

CZorString& CZorString::unEscapeWideChar() {
    if (isNull()) return *this;
    assignResult(*this, ZOR::detail::wideCharUnescape(*this));
    return *this;
}

CZorString& CZorString::quote() {
    std::wstring out = L"\"";
    if (!isNull()) out += static_cast<const wchar_t*>(*this);
    out += L'"';
    assignResult(*this, out);
    return *this;
}

CZorString& CZorString::unQuote() {
    const int n = len();
    if (n >= 2 && (*this)[0] == L'"' && (*this)[n - 1] == L'"') {
        const std::wstring inner(static_cast<const wchar_t*>(*this) + 1,
                                 static_cast<std::size_t>(n - 2));
        assignResult(*this, inner);
    }
    return *this;
}

namespace ZOR {

CZorString txtToRTF(const wchar_t* text) {
    std::wstring out;
    if (text) {
        bool overline = false;
        bool underline = false;
        for (const wchar_t* p = text; *p;) {
            if (p[0] != L'%' || p[1] != L'%') {
                out += *p++;
                continue;
            }
            const wchar_t letter = p[2];
            if (letter == 0) break;  // a marker at the very end adds nothing
            p += 3;
            switch (std::towlower(static_cast<wint_t>(letter))) {
                case L'c':
                    out += static_cast<wchar_t>(0x2205);
                    break;
                case L'd':
                    out += static_cast<wchar_t>(0x00B0);
                    break;
                case L'p':
                    out += static_cast<wchar_t>(0x00B1);
                    break;
                case L'o':
                    out += overline ? L"}" : L"{\\O";
                    overline = !overline;
                    break;
                case L'u':
                    out += underline ? L"}" : L"{\\L";
                    underline = !underline;
                    break;
                default:
                    out += letter;
            }
        }
        if (overline) out += L'}';
        if (underline) out += L'}';
    }
    return CZorString(out.c_str());
}

}  // namespace ZOR
