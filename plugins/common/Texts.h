#pragma once

#include "SolvanePlugin.h"

#include <QStringList>

/// The texts of a plugin in the user's language. Copyable; usable from any thread.
class Texts
{
public:
    /// @param core the host; without one the fallbacks are used.
    explicit Texts(mndCore *core)
        : m_core(core)
    { }

    QString operator()(const QString &key, const QString &fallback) const
    {
        return m_core ? m_core->stringResource(key, fallback) : fallback;
    }

    /// The text with "%1" to "%9" replaced, in one pass, so that an argument may hold a "%2" of its
    /// own. A placeholder without an argument stays as written, a surplus argument is dropped: the
    /// text may come from a translator.
    QString operator()(const QString &key, const QString &fallback,
                       const QStringList &arguments) const
    {
        return fill((*this)(key, fallback), arguments);
    }

    static QString fill(const QString &text, const QStringList &arguments);

private:
    mndCore *m_core;
};
