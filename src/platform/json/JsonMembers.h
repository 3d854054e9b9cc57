#pragma once

#include "platform/json/JsonReader.h"

/// Loops over the members and elements that a JsonReader stands before.
namespace JsonMembers {

/// Calls \p member with each key of an object, which reads the value or skips it. Ends with the first failure of the
/// reader, which the caller asks for afterwards.
template <typename Member>
void forMembers(JsonReader& json, Member member)
{
    for (bool more = json.enter('{'); more; more = json.next('}'))
        member(json.key());
}

/// Calls \p element before each element of an array, which reads the value or skips it. Ends as forMembers() does.
template <typename Element>
void forElements(JsonReader& json, Element element)
{
    for (bool more = json.enter('['); more; more = json.next(']'))
        element();
}

/// Keys of an object that were met, of those that it must have.
class RequiredKeys {
public:
    /// \param count keys that the object must have, numbered from 0 by the caller; at most 31
    explicit RequiredKeys(int count)
        : m_all((1U << count) - 1)
    {
    }
    /// \param key its number, below the count
    void met(int key) { m_met |= 1U << key; }
    /// Lets the reader fail unless all keys were met.
    void check(JsonReader& json) const
    {
        if (m_met != m_all)
            json.fail();
    }

private:
    unsigned m_all;
    unsigned m_met = 0;
};

} // namespace JsonMembers
