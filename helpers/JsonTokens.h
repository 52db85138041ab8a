#pragma once

#include <QByteArray>
#include <QVariant>

#include <optional>

/// What Qt's JSON parser leaves to be wished for. It takes some texts that are no JSON, and reads
/// integers above 2^63 as inexact reals. Pure; any thread.
namespace JsonTokens {

struct Checked
{
    QByteArray text;
    /// Whether integers were written as marked strings: then unmarked() belongs around the result.
    bool marked = false;
};

/// Checks every string and number for itself, and the depth; how they follow each other is the
/// parser's to check. Nothing for a fault.
std::optional<Checked> checked(const QByteArray &text, int depthLimit);

/// The value with its marked strings turned into qulonglong.
QVariant unmarked(const QVariant &value);

} // namespace JsonTokens
