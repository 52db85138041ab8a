#include "NotLoadedCard.h"

#include "plugins/common/Look.h"

#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace {

QString why(const mndLoadReports::Report &report, const Texts &texts)
{
    switch (report.reason) {
    case mndLoadReports::LeftOutAfterCrash:
        return u"%1 (%2 \u203a %3)"_s.arg(
            texts(u"SZ_SUPPORT_NOT_LOADED_CRASH"_s,
                  u"Left out, because Solvane did not end as it should"_s),
            texts(u"SZ_MENU_HELP"_s, u"Help"_s), // where the way back is
            texts(u"SZ_LEFT_OUT_PLUGINS"_s, u"Left-out plugins"_s));
    case mndLoadReports::LeftOutOfThisRun:
        return texts(u"SZ_SUPPORT_NOT_LOADED_RUN"_s, u"Left out of this run"_s);
    case mndLoadReports::Refused:
        break;
    }
    return texts(u"SZ_SUPPORT_NOT_LOADED_WHY"_s, u"Refused: %1"_s, {report.problems});
}

} // namespace

NotLoadedCard::NotLoadedCard(mndCore *core, const Texts &texts)
    : m_core(core)
    , m_texts(texts)
    , m_grid(new QGridLayout(this))
{
    m_grid->setContentsMargins(18, 14, 18, 14);
    m_grid->setHorizontalSpacing(24);
    m_grid->setVerticalSpacing(9);
    m_grid->setColumnStretch(0, 2);
    m_grid->setColumnStretch(1, 3);
    hide();
}

void NotLoadedCard::refresh()
{
    while (QLayoutItem *item = m_grid->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    auto *reports = m_core
        ? qobject_cast<mndLoadReports *>(m_core->sharedObject(u"SHARED.LOADREPORTS"_s))
        : nullptr;
    const auto notLoaded = reports ? reports->notLoaded() : QList<mndLoadReports::Report>();
    setVisible(!notLoaded.isEmpty());
    if (notLoaded.isEmpty())
        return;
    m_grid->addWidget(
        look::makeText(m_texts(u"SZ_SUPPORT_NOT_LOADED"_s, u"Plugins that were not loaded"_s),
                       look::secondaryText),
        0, 0, 1, 2);
    int row = 1;
    for (const mndLoadReports::Report &report : notLoaded) {
        const QString name = QFileInfo(report.path).completeBaseName();
        auto *reason = look::makeText(why(report, m_texts), look::secondaryText);
        reason->setTextInteractionFlags(Qt::TextSelectableByMouse);
        reason->setAccessibleName(u"%1: %2"_s.arg(name, reason->text()));
        m_grid->addWidget(look::makeText(name, look::text), row, 0);
        m_grid->addWidget(reason, row, 1);
        ++row;
    }
}
