#pragma once

#include <QStringList>
#include <QVariant>

#include <optional>

class Bundle;

/// The texts of one language, chosen once at start and only read from then on. Any thread.
class LanguageFile
{
public:
    enum class Outcome {
        Loaded,
        NotFound,   ///< neither the wanted language nor English has a file
        Unreadable, ///< a file was found, but neither it nor the English one holds a dictionary
    };

    /// Reads "<language>.strings" from the bundle's resources, or else "en.strings". The language
    /// counts as it is: "de-AT" never takes de.strings. None at all (null) counts as "en".
    static LanguageFile load(const Bundle &bundle, const QString &preferredLanguage);

    Outcome outcome() const { return m_outcome; }
    bool isLoaded() const { return m_outcome == Outcome::Loaded; }
    /// The file that was read; null unless loaded.
    const QString &path() const { return m_path; }
    /// The language it is named by; null unless loaded.
    QString language() const;
    const QVariantMap &dictionary() const { return m_dictionary; }
    /// Why files that were found could not be read, for a person. May hold an entry even when
    /// loaded: then English stands in.
    const QStringList &problems() const { return m_problems; }

    /// The text under the key: what is no text by its textual description. Nothing when the key is
    /// missing; an empty text is a text.
    std::optional<QString> text(const QString &key) const;

private:
    LanguageFile() = default;
    bool read(const QString &path);

    Outcome m_outcome = Outcome::NotFound;
    QString m_path;
    QVariantMap m_dictionary;
    QStringList m_problems;
};
