// The languages of the product with their country numbers and Windows code pages.
#pragma once

// One row of the language table.
struct zor_country_st {
    const wchar_t* number;  // the country number as text, e.g. L"49"; null ends the table
    const wchar_t* name;    // the language's own name
    int codePage;           // its Windows code page
};

// The table of languages, ended by a row whose number is null. It is a writable module-wide
// array; nothing guards it, and a caller that writes to it takes on the consequences.
zor_country_st* zorDlCountrys();

namespace ZOR {

// The code page of the row whose number equals `number`, ignoring case; 1252 for a number the
// table lacks (and for a null pointer).
int codePage(const wchar_t* number);

}  // namespace ZOR
