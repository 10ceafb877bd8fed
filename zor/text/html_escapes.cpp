// The HTML entity conversions of CZorString and htmlSpecialChars.
#include <cstdint>
#include <cwchar>
#include <cwctype>
#include <string>
#include <string_view>

#include "zor/text/escapes.h"
#include "zor/text/html_entities.h"
#include "zor/text/text_result.h"

namespace {

using ZOR::detail::assignResult;
using ZOR::detail::HtmlEntity;
using ZOR::detail::kHtmlEntities;
using ZOR::detail::kHtmlSpecialEntities;

const wchar_t* specialEntity(wchar_t unit) {
    for (const HtmlEntity& e : kHtmlSpecialEntities) {
        if (e.unit == unit) return e.text;
    }
    return nullptr;
}

void appendNumericReference(std::wstring& out, wchar_t unit) {
    wchar_t reference[24];
    std::swprintf(reference, sizeof reference / sizeof *reference, L"&#x%lx;",
                  static_cast<unsigned long>(static_cast<std::uint32_t>(unit)));
    out += reference;
}

int digitValue(wchar_t c, bool hexadecimal) {
    if (c >= L'0' && c <= L'9') return c - L'0';
    if (!hexadecimal) return -1;
    if (c >= L'a' && c <= L'f') return c - L'a' + 10;
    if (c >= L'A' && c <= L'F') return c - L'A' + 10;
    return -1;
}

// Reads a numeric entity "&#...;" given as the text between "&#" and ";". The digits must fill
// it exactly; their value is cut to the width of a unit. False when they don't.
bool numericEntity(std::wstring_view body, wchar_t& unit) {
    const bool hexadecimal = !body.empty() && body.front() == L'x';
    if (hexadecimal) body.remove_prefix(1);
    std::uint32_t value = 0;
    for (const wchar_t c : body) {
        const int digit = digitValue(c, hexadecimal);
        if (digit < 0) return false;
        value = value * (hexadecimal ? 16u : 10u) + static_cast<std::uint32_t>(digit);
    }
    unit = static_cast<wchar_t>(value);
    return true;
}

bool namedEntity(std::wstring_view entity, wchar_t& unit) {
    for (const HtmlEntity& e : kHtmlEntities) {
        if (entity == e.text) {
            unit = e.unit;
            return true;
        }
    }
    return false;
}

}  // namespace

CZorString& CZorString::escapeHtmlSpecial() {
    if (isNull()) return *this;
    std::wstring out;
    for (const wchar_t* p = *this; *p; ++p) {
        if (const wchar_t* entity = specialEntity(*p)) {
            out += entity;
        } else {
            out += *p;
        }
    }
    assignResult(*this, out);
    return *this;
}

CZorString& CZorString::escapeHtml(const wchar_t* chars) {
    if (isNull()) return *this;
    std::wstring out;
    for (const wchar_t* p = *this; *p; ++p) {
        const wchar_t c = *p;
        if (chars) {
            if (std::wcschr(chars, c)) {
                appendNumericReference(out, c);
            } else {
                out += c;
            }
        } else if (const wchar_t* entity = specialEntity(c)) {
            out += entity;
        } else if (!std::iswprint(static_cast<wint_t>(c)) || static_cast<std::uint32_t>(c) > 127) {
            appendNumericReference(out, c);
        } else {
            out += c;
        }
    }
    assignResult(*this, out);
    return *this;
}

CZorString& CZorString::unEscapeHtml() {
    if (isNull()) return *this;
    const std::wstring text(*this);
    std::wstring out;
    // The first ';' at or behind the walk, found once per stretch of text.
    std::size_t semicolon = text.find(L';');
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] != L'&') {
            out += text[i++];
            continue;
        }
        if (semicolon != std::wstring::npos && semicolon <= i) semicolon = text.find(L';', i + 1);
        if (semicolon == std::wstring::npos) {
            // No ';' anywhere behind: the rest is plain text.
            out.append(text, i, std::wstring::npos);
            break;
        }
        const std::wstring_view entity(text.data() + i, semicolon - i + 1);
        wchar_t unit = 0;
        const bool hit = entity.size() > 2 && entity[1] == L'#'
                             ? numericEntity(entity.substr(2, entity.size() - 3), unit)
                             : namedEntity(entity, unit);
        if (hit) {
            // A unit of 0 cannot stand in a text; "&#;" and "&#0;" yield nothing.
            if (unit != 0) out += unit;
            i = semicolon + 1;
        } else {
            out += text[i++];
        }
    }
    assignResult(*this, out);
    return *this;
}

namespace ZOR {

bool htmlSpecialChars(CZorString& out, const wchar_t* text) {
    if (!text) return false;
    out = text;
    out.escapeHtmlSpecial();
    return true;
}

}  // namespace ZOR
