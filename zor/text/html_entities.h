// The entity tables of the HTML conversions of CZorString.
#pragma once

namespace ZOR::detail {

struct HtmlEntity {
    wchar_t unit;
    const wchar_t* text;
};

// & < > " with their entities, in this order.
extern const HtmlEntity kHtmlSpecialEntities[4];

// The four special entities, then the units 0xA0 to 0xFF with the entity names of HTML 4 for
// Latin-1, in ascending order.
extern const HtmlEntity kHtmlEntities[100];

}  // namespace ZOR::detail
