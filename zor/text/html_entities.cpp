#include "zor/text/html_entities.h"

namespace ZOR::detail {

const HtmlEntity kHtmlSpecialEntities[4] = {
    {L'&', L"&amp;"},
    {L'<', L"&lt;"},
    {L'>', L"&gt;"},
    {L'"', L"&quot;"},
};

const HtmlEntity kHtmlEntities[100] = {
    {L'&', L"&amp;"},    {L'<', L"&lt;"},     {L'>', L"&gt;"},     {L'"', L"&quot;"},
    {0xA0, L"&nbsp;"},   {0xA1, L"&iexcl;"},  {0xA2, L"&cent;"},   {0xA3, L"&pound;"},
    {0xA4, L"&curren;"}, {0xA5, L"&yen;"},    {0xA6, L"&brvbar;"}, {0xA7, L"&sect;"},
    {0xA8, L"&uml;"},    {0xA9, L"&copy;"},   {0xAA, L"&ordf;"},   {0xAB, L"&laquo;"},
    {0xAC, L"&not;"},    {0xAD, L"&shy;"},    {0xAE, L"&reg;"},    {0xAF, L"&macr;"},
    {0xB0, L"&deg;"},    {0xB1, L"&plusmn;"}, {0xB2, L"&sup2;"},   {0xB3, L"&sup3;"},
    {0xB4, L"&acute;"},  {0xB5, L"&micro;"},  {0xB6, L"&para;"},   {0xB7, L"&middot;"},
    {0xB8, L"&cedil;"},  {0xB9, L"&sup1;"},   {0xBA, L"&ordm;"},   {0xBB, L"&raquo;"},
    {0xBC, L"&frac14;"}, {0xBD, L"&frac12;"}, {0xBE, L"&frac34;"}, {0xBF, L"&iquest;"},
    {0xC0, L"&Agrave;"}, {0xC1, L"&Aacute;"}, {0xC2, L"&Acirc;"},  {0xC3, L"&Atilde;"},
    {0xC4, L"&Auml;"},   {0xC5, L"&Aring;"},  {0xC6, L"&AElig;"},  {0xC7, L"&Ccedil;"},
    {0xC8, L"&Egrave;"}, {0xC9, L"&Eacute;"}, {0xCA, L"&Ecirc;"},  {0xCB, L"&Euml;"},
    {0xCC, L"&Igrave;"}, {0xCD, L"&Iacute;"}, {0xCE, L"&Icirc;"},  {0xCF, L"&Iuml;"},
    {0xD0, L"&ETH;"},    {0xD1, L"&Ntilde;"}, {0xD2, L"&Ograve;"}, {0xD3, L"&Oacute;"},
    {0xD4, L"&Ocirc;"},  {0xD5, L"&Otilde;"}, {0xD6, L"&Ouml;"},   {0xD7, L"&times;"},
    {0xD8, L"&Oslash;"}, {0xD9, L"&Ugrave;"}, {0xDA, L"&Uacute;"}, {0xDB, L"&Ucirc;"},
    {0xDC, L"&Uuml;"},   {0xDD, L"&Yacute;"}, {0xDE, L"&THORN;"},  {0xDF, L"&szlig;"},
    {0xE0, L"&agrave;"}, {0xE1, L"&aacute;"}, {0xE2, L"&acirc;"},  {0xE3, L"&atilde;"},
    {0xE4, L"&auml;"},   {0xE5, L"&aring;"},  {0xE6, L"&aelig;"},  {0xE7, L"&ccedil;"},
    {0xE8, L"&egrave;"}, {0xE9, L"&eacute;"}, {0xEA, L"&ecirc;"},  {0xEB, L"&euml;"},
    {0xEC, L"&igrave;"}, {0xED, L"&iacute;"}, {0xEE, L"&icirc;"},  {0xEF, L"&iuml;"},
    {0xF0, L"&eth;"},    {0xF1, L"&ntilde;"}, {0xF2, L"&ograve;"}, {0xF3, L"&oacute;"},
    {0xF4, L"&ocirc;"},  {0xF5, L"&otilde;"}, {0xF6, L"&ouml;"},   {0xF7, L"&divide;"},
    {0xF8, L"&oslash;"}, {0xF9, L"&ugrave;"}, {0xFA, L"&uacute;"}, {0xFB, L"&ucirc;"},
    {0xFC, L"&uuml;"},   {0xFD, L"&yacute;"}, {0xFE, L"&thorn;"},  {0xFF, L"&yuml;"},
};

}  // namespace ZOR::detail
