// CZorString::match, wildcard patterns with alternatives.
#include <cstddef>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "zor/text/text_lists.h"

namespace {

// An alternative without a leading `*`, compared from the first unit: `?` takes one unit, and
// at a `*` the match is made whatever follows in either text.
bool matchFromStart(std::wstring_view text, std::wstring_view pattern) {
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == L'*') return true;
        if (i >= text.size()) return false;
        if (pattern[i] != L'?' && pattern[i] != text[i]) return false;
    }
    return text.size() == pattern.size();
}

// Every text the matcher sees is a suffix of the caller's text and every pattern a piece of
// the caller's pattern, so a suffix is known by its length and a piece by where it lies.
class Matcher {
  public:
    bool alternatives(std::wstring_view text, std::wstring_view pattern, wchar_t separator) {
        if (separator == 0) return alternative(text, pattern);
        while (!pattern.empty()) {
            const std::size_t end = pattern.find(separator);
            const std::wstring_view piece = pattern.substr(0, end);
            if (!piece.empty() && alternative(text, piece)) return true;
            if (end == std::wstring_view::npos) break;
            pattern.remove_prefix(end + 1);
        }
        return false;
    }

  private:
    struct Key {
        const wchar_t* pattern;
        std::size_t patternSize;
        std::size_t textSize;
        bool operator==(const Key&) const = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key& k) const {
            const std::size_t h = std::hash<const wchar_t*>()(k.pattern);
            return h ^ (k.patternSize * 0x9E3779B97F4A7C15ull) ^
                   (k.textSize * 0xC2B2AE3D27D4EB4Full);
        }
    };

    // An alternative "*R" searches: R is matched, as a list of alternatives split at ',',
    // against the text from each occurrence of R's literal head on. Whether that succeeds from
    // some occurrence at or behind a position is remembered per position, so that searches
    // nested in searches look at each position once.
    bool alternative(std::wstring_view text, std::wstring_view pattern) {
        if (pattern.size() < 2 || pattern.front() != L'*') return matchFromStart(text, pattern);
        std::wstring_view rest = pattern.substr(1);
        // "**R" searches for "*R" from every position, which is "*R" searched once. Only
        // without commas, which would split the rest differently.
        while (rest.size() > 1 && rest.front() == L'*' &&
               rest.find(L',') == std::wstring_view::npos) {
            rest.remove_prefix(1);
        }
        const std::wstring_view head = rest.substr(0, rest.find_first_of(L"*?"));
        std::vector<std::size_t> visited;  // suffix lengths whose answer this search decides
        visited.push_back(text.size());
        bool found = false;
        for (std::size_t at = text.find(head); at != std::wstring_view::npos;
             at = text.find(head, at + 1)) {
            const auto known = searched.find(Key{pattern.data(), pattern.size(), text.size() - at});
            if (known != searched.end()) {
                found = known->second;
                break;
            }
            visited.push_back(text.size() - at);
            if (alternatives(text.substr(at), rest, L',')) {
                found = true;
                break;
            }
        }
        for (const std::size_t suffix : visited)
            searched[Key{pattern.data(), pattern.size(), suffix}] = found;
        return found;
    }

    std::unordered_map<Key, bool, KeyHash> searched;
};

}  // namespace

bool CZorString::match(const wchar_t* pattern, wchar_t separator) const {
    if (isNull() || !pattern) return false;
    Matcher matcher;
    return matcher.alternatives(std::wstring_view(*this, static_cast<std::size_t>(len())), pattern,
                                separator);
}
