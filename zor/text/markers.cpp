// The `<name:value>` markers of the product's text lists.
#include <cstdint>
#include <cwchar>

#include "zor/text/text_lists.h"

namespace ZOR {
namespace {

bool isEmptyText(const CZorString& s) {
    return s.len() == 0;
}

// Rewrites every marker of every entry: `valueOnly` keeps just the value, otherwise the value
// goes and the head stays. The heads gathered so far stay in the working list from one entry
// to the next.
void rewriteMarkers(CZorArrayTempl<CZorString>& list, bool valueOnly) {
    CZorArrayTempl<CZorString> heads;
    for (std::uint32_t i = 0; i < list.len();) {
        CZorString& entry = list[static_cast<int>(i)];
        getMarkerList(entry, heads);
        for (std::uint32_t h = 0; h < heads.len(); ++h) {
            const CZorString& head = heads[static_cast<int>(h)];
            const CZorString marker = parse(entry, head, L">", true);
            if (isEmptyText(marker)) continue;
            if (!valueOnly) {
                entry.replace(marker, head + L'>');
                continue;
            }
            const bool startedWithBlank = entry[0] == L' ';
            entry.replace(marker, parse(entry, head, L">", false));
            if (!startedWithBlank) entry.trimLeft();
        }
        if (valueOnly && isEmptyText(entry)) {
            list.removeAt(i);  // the next entry moves into this place
        } else {
            ++i;
        }
    }
}

}  // namespace

void getMarkerList(const wchar_t* text, CZorArrayTempl<CZorString>& heads) {
    if (!text) return;
    for (const wchar_t* p = std::wcschr(text, L'<'); p;) {
        const CZorString marker = parse(p, L"<", L">", true);
        // The search goes on behind the marker, or one unit further where there was none.
        p = std::wcschr(p + (isEmptyText(marker) ? 1 : marker.len()), L'<');
        if (isEmptyText(marker)) continue;
        CZorString head = parse(marker, L"<", L":", true);
        if (!isEmptyText(head)) heads.append(head);
    }
}

void clearMarker(CZorArrayTempl<CZorString>& list) {
    rewriteMarkers(list, false);
}

void removeMarker(CZorArrayTempl<CZorString>& list) {
    rewriteMarkers(list, true);
}

void txtListReplace(const CZorArrayTempl<CZorString>& heads, CZorString& text,
                    const CZorArrayTempl<CZorString>& values, bool whole) {
    for (std::uint32_t h = 0; h < heads.len(); ++h) {
        const CZorString& head = heads[static_cast<int>(h)];
        const CZorString marker = parse(text, head, L">", true);
        if (isEmptyText(marker)) continue;
        CZorString value;
        for (std::uint32_t v = 0; v < values.len() && isEmptyText(value); ++v) {
            const CZorString& entry = values[static_cast<int>(v)];
            if (!isEmptyText(entry)) value = parse(entry, head, L">", whole);
        }
        if (whole && isEmptyText(value)) continue;
        text.replace(marker, isEmptyText(value) ? L"" : static_cast<const wchar_t*>(value));
    }
    text.replace(L"  ", L" ");
}

}  // namespace ZOR
