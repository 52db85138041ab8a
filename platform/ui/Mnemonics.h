#pragma once

#include <QAbstractButton>
#include <QString>

#include <type_traits>

/// Buttons, check boxes, menus, their entries, tabs and group boxes take a "&" in their text for
/// the mark of a key, and do not show it. Labels, tooltips and lists show every letter. Any thread.
namespace mnemonics {

/// What makes such a widget show the text as it is: titles from a language file, from a plugin or
/// of a file hold "&" as a letter.
inline QString literal(QString text)
{
    return text.replace(u'&', QStringLiteral("&&"));
}

/// What a widget with this text shows.
inline QString shown(const QString &text)
{
    QString letters;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'&' && i + 1 < text.size())
            ++i;
        letters += text[i];
    }
    return letters;
}

/// What a button or a label shows. Main thread.
template <typename Control>
QString textOf(const Control &control)
{
    if constexpr (std::is_base_of_v<QAbstractButton, Control>)
        return shown(control.text());
    else
        return control.text();
}

/// Has a button or a label show the text as it is. Main thread.
template <typename Control>
void setText(Control &control, const QString &text)
{
    if constexpr (std::is_base_of_v<QAbstractButton, Control>)
        control.setText(literal(text));
    else
        control.setText(text);
}

} // namespace mnemonics
