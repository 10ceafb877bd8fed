#include "zor/text/languages.h"

#include <wchar.h>  // wcscasecmp (POSIX)

namespace {

constexpr int kDefaultCodePage = 1252;

zor_country_st countries[] = {
    {L"42", L"čeština", 1250},      {L"49", L"deutsch", 1252},    {L"61", L"english (GB)", 1252},
    {L"01", L"english (US)", 1252}, {L"34", L"español", 1252},    {L"33", L"français", 1252},
    {L"39", L"italiano", 1252},     {L"36", L"magyar", 1250},     {L"31", L"nederlands", 1252},
    {L"48", L"polski", 1250},       {L"351", L"português", 1252}, {L"40", L"român", 1250},
    {L"421", L"slovak", 1250},      {L"46", L"swenska", 1252},    {L"90", L"türkçe", 1254},
    {L"359", L"български", 1251},   {L"86", L"中文", 936},        {L"07", L"русский", 1251},
    {nullptr, nullptr, 0},
};

}  // namespace

zor_country_st* zorDlCountrys() {
    return countries;
}

namespace ZOR {

int codePage(const wchar_t* number) {
    if (!number) return kDefaultCodePage;
    for (const zor_country_st* row = countries; row->number; ++row) {
        if (::wcscasecmp(row->number, number) == 0) return row->codePage;
    }
    return kDefaultCodePage;
}

}  // namespace ZOR
