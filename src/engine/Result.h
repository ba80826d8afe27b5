// A value or what went wrong. The engine's functions return this instead of throwing or giving a null.
#pragma once

#include <QString>

#include <utility>
#include <variant>

namespace quorvia::engine {

enum class ErrorKind {
    NotFound,    ///< nothing of that name exists
    Unreadable,  ///< it exists, but its bytes cannot be read or it is not a regular file
    NotAnImage,  ///< no codec knows the content
    Unsupported, ///< a known format in a variant that is not decoded or encoded
    Damaged,     ///< a known format whose content breaks its rules beyond use
    TooLarge,    ///< the header promises more than Limits allow; nothing was allocated
    WriteFailed, ///< the target could not be written
    Cancelled,   ///< the request was dropped before it was done
};

struct Error
{
    ErrorKind kind;
    QString text; ///< one line for the log: says what and where, without the file's name
};

/// Holds either a T or an Error. `Result<void>` is spelt `Status`.
template <class T>
class Result
{
  public:
    Result(T value) : m_state(std::move(value)) {}
    Result(Error error) : m_state(std::move(error)) {}

    explicit operator bool() const { return std::holds_alternative<T>(m_state); }
    /// The value; only when the result is good.
    const T& operator*() const& { return std::get<T>(m_state); }
    T& operator*() & { return std::get<T>(m_state); }
    T&& operator*() && { return std::get<T>(std::move(m_state)); }
    const T* operator->() const { return &std::get<T>(m_state); }
    T* operator->() { return &std::get<T>(m_state); }
    /// The error; only when the result is not good.
    const Error& error() const { return std::get<Error>(m_state); }

  private:
    std::variant<T, Error> m_state;
};

using Status = Result<std::monostate>;
inline Status ok()
{
    return Status(std::monostate{});
}

} // namespace quorvia::engine
