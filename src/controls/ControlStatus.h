// How an operation of a control ended. A value: nothing is thrown across the rooms.
#pragma once

#include <QString>

#include <optional>
#include <utility>

namespace quorvia::controls {

struct ControlError
{
    int Number;
    QString Description; ///< one line, for the user
    QString Source;      ///< the control's own name for errors
    bool operator==(const ControlError&) const = default;
};

/// Good, or an error.
class [[nodiscard]] ControlStatus
{
  public:
    ControlStatus() = default;
    ControlStatus(ControlError error) : m_error(std::move(error)) {}

    /// True when the operation has been done.
    explicit operator bool() const { return !m_error; }
    /// The error; only when the status is not good.
    const ControlError& error() const { return *m_error; }

  private:
    std::optional<ControlError> m_error;
};

} // namespace quorvia::controls
