#pragma once

#include <QStringList>

class QMenu;
class QMenuBar;
class QWidget;

/// The letters by which the keyboard reaches titles, underlined where the desktop underlines them.
/// They are chosen from the titles as they are shown, so that each language has its own and no two
/// of one menu or window share one. Titles in scripts without letters that a key types get a Latin
/// letter in brackets behind them, as is usual in those languages. Main thread.
///
/// Titles are in the toolkit's notation, where "&&" stands for "&".
namespace keyLetters {

/// The object property with the designed title, in English, of what is translated: it suggests
/// letters to titles in scripts that have none.
inline constexpr char designedTitle[] = "designedTitle";

/// Chooses letters for the menus of the bar now, and for the entries of each whenever it is about
/// to show. Call once, when the bar's titles are set.
void follow(QMenuBar *bar);

/// Chooses letters for the buttons of the window.
void assign(QWidget *window);

/// The title as it was before a letter was chosen.
QString plainTitle(const QString &title);

/// @param titles those to be told apart, in order; the first has the first choice.
/// @param designed what each was designed as; null or missing for none.
/// @return each with its mark; one for which no letter is left has none.
QStringList choose(const QStringList &titles, const QStringList &designed = {});

} // namespace keyLetters
