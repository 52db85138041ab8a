#pragma once

#include <QString>

#include <optional>
#include <utility>

/// A value, or the reason there is none. Errors travel as values, never as exceptions.
template <typename T>
class Result
{
public:
    Result(T value)
        : m_value(std::move(value))
    { }

    /// @param reason one line for a person, without a full stop; never empty.
    static Result failure(QString reason)
    {
        Result result;
        result.m_error = std::move(reason);
        return result;
    }

    bool ok() const { return m_value.has_value(); }
    explicit operator bool() const { return ok(); }

    /// Only when ok().
    const T &value() const & { return *m_value; }
    T &&value() && { return std::move(*m_value); }
    T valueOr(T other) const { return m_value.value_or(std::move(other)); }

    /// Null when ok().
    const QString &error() const { return m_error; }

private:
    Result() = default;

    std::optional<T> m_value;
    QString m_error;
};
