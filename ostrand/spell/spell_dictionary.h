#pragma once
// A spelling dictionary as the spell checker sees it: does it know a word, what would it
// suggest instead, and words it should know from now on. Words are UTF-8.

#include <string>
#include <string_view>
#include <vector>

namespace ost {

class SpellDictionary
{
public:
    virtual ~SpellDictionary() = default;
    virtual bool Knows(std::string_view word) = 0;
    /// Best first; empty when the dictionary has nothing to offer.
    virtual std::vector<std::string> Suggest(std::string_view word) = 0;
    /// Known for as long as this object lives; keeping it is the caller's business.
    virtual void AddWord(std::string_view word) = 0;
};

} // namespace ost
