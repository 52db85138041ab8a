#include "platform/ui/KeyLetters.h"
#include "platform/ui/RealDesktopServices.h"
#include "tests/support/TestServices.h"

#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>

TEST(KeyLetters, TellTitlesOfOneMenuApart)
{
    const std::tuple<QStringList, QStringList, QStringList> cases[] = {
        {{u"Quit"_s, u"Quick look"_s, u"Qq"_s}, {}, {u"&Quit"_s, u"Quick &look"_s, u"Qq"_s}},
        {{u"R && D"_s, u"Ärger"_s, u"Éé"_s}, {}, {u"&R && D"_s, u"Är&ger"_s, u"&Éé"_s}},
        {{u"Выход"_s, u"Вид"_s, u"7 дней"_s}, {}, {u"&Выход"_s, u"В&ид"_s, u"&7 дней"_s}},
        {{u"終了"_s, u"環境設定…"_s, u"検索"_s},
         {u"Quit"_s, u"Queue…"_s},
         {u"終了(&Q)"_s, u"環境設定(&U)…"_s, u"検索(&A)"_s}},
        {{u""_s, u"…"_s}, {}, {u""_s, u"…"_s}},
    };
    for (const auto &[titles, designed, chosen] : cases) {
        EXPECT_EQ(keyLetters::choose(titles, designed), chosen);
        EXPECT_EQ(keyLetters::choose(chosen, designed), chosen) << "asked again";
        for (qsizetype i = 0; i < titles.size(); ++i)
            EXPECT_EQ(keyLetters::plainTitle(chosen[i]), titles[i]);
    }
}

TEST(KeyLetters, FollowTheEntriesOfMenus)
{
    QMenuBar bar;
    QMenu *menu = bar.addMenu(u"Solvane"_s);
    bar.addMenu(u"Services"_s);
    QMenu *submenu = menu->addMenu(u"More"_s);
    keyLetters::follow(&bar);
    EXPECT_EQ(menu->title() + bar.actions().at(1)->text(), u"&SolvaneS&ervices"_s);
    menu->addAction(u"Hidden"_s)->setVisible(false);
    menu->addAction(u"Hide"_s);
    submenu->addAction(u"Most"_s);
    for (QMenu *shown : {menu, submenu})
        Q_EMIT shown->aboutToShow();
    QStringList texts;
    for (const QAction *entry : menu->actions() + submenu->actions())
        texts << entry->text();
    EXPECT_EQ(texts, (QStringList{u"&More"_s, u"Hidden"_s, u"&Hide"_s, u"&Most"_s}));
}

TEST(KeyLetters, ReachTheAnswersOfAlerts)
{
    const TestServices services;
    QStringList texts;
    QTimer::singleShot(0, [&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        for (const QAbstractButton *button : box->buttons())
            texts << button->text();
        box->reject();
    });
    MessageBoxAlertPanel().run(u"title"_s, u"message"_s, u"A & B"_s, u"A & C"_s);
    texts.sort();
    EXPECT_EQ(texts, (QStringList{u"&A && B"_s, u"A && &C"_s}));
}
