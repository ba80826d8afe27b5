// Who answers instead of the screen: what the dialogs keep of the Answerer that live. For the files behind
// Dialogs.h alone.
#pragma once

#include "platform/Dialogs.h"

#include <utility>
#include <vector>

namespace quorvia::platform {

/// Those who answer dialogs of one kind, the newest last.
template <class Asked, class Answer>
class Answerers
{
  public:
    using Function = std::function<Answer(const Asked&)>;

    static void add(const void* owner, Function answer) { stack().emplace_back(owner, std::move(answer)); }
    static void remove(const void* owner)
    {
        std::erase_if(stack(), [owner](const auto& entry) { return entry.first == owner; });
    }
    /// A copy, as it may end its own life; empty when there is none.
    static Function newest() { return stack().empty() ? Function() : stack().back().second; }

  private:
    static std::vector<std::pair<const void*, Function>>& stack()
    {
        static std::vector<std::pair<const void*, Function>> all;
        return all;
    }
};

template <class Asked, class Answer>
Answerer<Asked, Answer>::Answerer(std::function<Answer(const Asked&)> answer)
{
    Answerers<Asked, Answer>::add(this, std::move(answer));
}

template <class Asked, class Answer>
Answerer<Asked, Answer>::~Answerer()
{
    Answerers<Asked, Answer>::remove(this);
}

} // namespace quorvia::platform
