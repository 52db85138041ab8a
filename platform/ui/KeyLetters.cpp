#include "platform/ui/KeyLetters.h"

#include <QAbstractButton>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Whether a key of a usual layout for the script types it.
bool isTypeable(QChar character)
{
    if (character.isDigit())
        return true;
    switch (character.script()) {
    case QChar::Script_Latin:
    case QChar::Script_Cyrillic:
    case QChar::Script_Greek:
        return character.isLetter();
    default:
        return false;
    }
}

bool isPlain(QChar character)
{
    return character.unicode() < 128 || character.script() != QChar::Script_Latin;
}

/// Positions in the order in which people expect letters: beginnings of words, then the other
/// letters, those with accents last.
QList<qsizetype> candidates(const QString &title)
{
    QList<qsizetype> beginnings, others, accented;
    for (qsizetype i = 0; i < title.size(); ++i) {
        if (!isTypeable(title[i]))
            continue;
        const bool begins = i == 0 || !title[i - 1].isLetterOrNumber();
        (!isPlain(title[i]) ? accented : begins ? beginnings : others) << i;
    }
    return beginnings + others + accented;
}

class Letters
{
public:
    /// Takes the letter, unless it is taken.
    bool take(QChar letter)
    {
        if (m_taken.contains(letter.toUpper()))
            return false;
        m_taken.insert(letter.toUpper());
        return true;
    }

private:
    QSet<QChar> m_taken;
};

QString marked(const QString &title, const QString &designed, Letters &letters)
{
    const QList<qsizetype> own = candidates(title);
    for (const qsizetype position : own) {
        if (letters.take(title[position]))
            return QString(title).insert(position, u'&');
    }
    const bool isForeign =
        std::any_of(title.begin(), title.end(), [](QChar one) { return one.isLetter(); });
    if (!own.isEmpty() || !isForeign)
        return title;
    QString suggested;
    for (const qsizetype position : candidates(designed))
        suggested += designed[position];
    for (const QChar letter : QString(suggested + u"ABCDEFGHIJKLMNOPQRSTUVWXYZ"_s)) {
        if (!letters.take(letter))
            continue;
        // Before the dots that say that a question follows.
        const qsizetype end = title.endsWith(u'\u2026') ? title.size() - 1 : title.size();
        return QString(title).insert(end, u"(&%1)"_s.arg(letter.toUpper()));
    }
    return title;
}

void assignToEntries(const QMenu *menu)
{
    QList<QAction *> entries;
    QStringList titles, designed;
    for (QAction *entry : menu->actions()) {
        if (!entry->isVisible() || entry->isSeparator())
            continue;
        entries << entry;
        titles << entry->text();
        designed << entry->property(keyLetters::designedTitle).toString();
    }
    const QStringList chosen = keyLetters::choose(titles, designed);
    for (qsizetype i = 0; i < entries.size(); ++i)
        entries[i]->setText(chosen[i]);
}

void followMenu(QMenu *menu)
{
    QObject::connect(menu, &QMenu::aboutToShow, menu, [menu] { assignToEntries(menu); });
    for (const QAction *entry : menu->actions()) {
        if (entry->menu())
            followMenu(entry->menu());
    }
}

} // namespace

namespace keyLetters {

QString plainTitle(const QString &title)
{
    static const QRegularExpression inBrackets(u"\\(&[^&]\\)(?=\u2026?$)"_s);
    QString plain = QString(title).remove(inBrackets);
    for (qsizetype i = 0; i < plain.size(); ++i) {
        if (plain[i] != u'&')
            continue;
        if (plain.mid(i + 1, 1) == u"&")
            ++i; // an "&" that is shown
        else
            plain.remove(i, 1);
    }
    return plain;
}

QStringList choose(const QStringList &titles, const QStringList &designed)
{
    Letters letters;
    QStringList chosen;
    for (qsizetype i = 0; i < titles.size(); ++i)
        chosen << marked(plainTitle(titles[i]), designed.value(i), letters);
    return chosen;
}

void follow(QMenuBar *bar)
{
    QList<QMenu *> menus;
    QStringList titles, designed;
    for (const QAction *action : bar->actions()) {
        QMenu *menu = action->menu();
        if (!menu)
            continue;
        menus << menu;
        titles << menu->title();
        designed << menu->property(designedTitle).toString();
        followMenu(menu);
    }
    const QStringList chosen = choose(titles, designed);
    for (qsizetype i = 0; i < menus.size(); ++i)
        menus[i]->setTitle(chosen[i]);
}

void assign(QWidget *window)
{
    QList<QAbstractButton *> buttons;
    QStringList titles;
    for (QAbstractButton *button : window->findChildren<QAbstractButton *>()) {
        buttons << button;
        titles << button->text();
    }
    const QStringList chosen = choose(titles);
    for (qsizetype i = 0; i < buttons.size(); ++i)
        buttons[i]->setText(chosen[i]);
}

} // namespace keyLetters
