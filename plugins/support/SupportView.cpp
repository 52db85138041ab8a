#include "SupportView.h"

#include "NotLoadedCard.h"
#include "SentFacts.h"
#include "VersionList.h"

#include "plugins/common/Card.h"
#include "plugins/common/ElidedLabel.h"
#include "plugins/common/LinkLabel.h"
#include "plugins/common/Look.h"

#include <QAccessible>
#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

QLabel *makeParagraph(const QString &text, const QColor &color)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    look::alignToLayout(label);
    label->setWordWrap(true);
    look::setTextColor(label, color);
    return label;
}

QLabel *makeHeading(const QString &text, double factor)
{
    auto *label = new ElidedLabel;
    label->setText(text);
    label->setFont(look::font(factor, QFont::DemiBold));
    return label;
}

QPushButton *makeButton(const QString &title)
{
    auto *button = new QPushButton(mnemonics::literal(title));
    button->setAutoDefault(true); // Return presses it, too
    look::whenPolished(button, [button] {
        const QSize natural = button->sizeHint();
        button->setMinimumSize(natural.width() + 16, natural.height() + 4);
    });
    return button;
}

/// A card with a heading, an explanation and, at its foot, what to do.
QWidget *makeCard(const QString &heading, const QString &explanation, QLayout *action)
{
    auto *card = new Card;
    auto *column = new QVBoxLayout(card);
    column->setContentsMargins(18, 16, 18, 16);
    column->setSpacing(8);
    column->addWidget(makeHeading(heading, 1.0));
    column->addWidget(makeParagraph(explanation, look::secondaryText));
    column->addStretch(1);
    column->addSpacing(4);
    column->addLayout(action);
    return card;
}

std::vector<VersionList::Line> programLines(mndCore *core, const Texts &texts)
{
    std::vector<VersionList::Line> lines;
    if (core) {
        const QString edition = core->mndEdition() == 1
            ? texts(u"SZ_SUPPORT_EDITION_STORE"_s, u"Store edition"_s)
            : texts(u"SZ_SUPPORT_EDITION_WEB"_s, u"Web edition"_s);
        lines.push_back({texts(u"SZ_TITLE"_s, u"Solvane"_s),
                         u"%1, %2"_s.arg(core->slvBundleVersionString(), edition)});
    }
    lines.push_back({u"Qt"_s, QString::fromLatin1(qVersion())});
    auto *helpers =
        core ? qobject_cast<mndHelpers *>(core->sharedObject(u"SHARED.HELPERS"_s)) : nullptr;
    if (helpers)
        lines.push_back({texts(u"SZ_SUPPORT_IDENTIFIER"_s, u"Anonymous identifier"_s),
                         helpers->anonymousUUID()});
    return lines;
}

} // namespace

SupportView::SupportView(mndCore *core, const QString &bundlePath)
    : m_core(core)
    , m_texts(core)
    , m_ownFolder(QFileInfo(bundlePath).path())
{
    const QString title = m_texts(u"SZ_SUPPORT_TITLE"_s, u"Help and Support"_s);
    auto *column = new QVBoxLayout(look::addScrollingColumn(this, title));
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeHeading(title, 1.8));
    column->addSpacing(6);
    column->addWidget(makeParagraph(
        m_texts(u"SZ_SUPPORT_INTRO"_s,
                u"Something does not work, or you wonder how it does? We are happy to help."_s),
        look::secondaryText));
    column->addSpacing(24);
    auto *cards = new QHBoxLayout;
    cards->setSpacing(look::gap);
    cards->addWidget(makeHelpCard(), 1);
    cards->addWidget(makeFeedbackCard(), 1);
    column->addLayout(cards);
    m_sentPlace = new QVBoxLayout;
    m_sentPlace->setContentsMargins(0, 0, 0, 0);
    column->addLayout(m_sentPlace);
    m_notLoaded = new NotLoadedCard(core, m_texts);
    m_notLoadedPlace = new QVBoxLayout;
    m_notLoadedPlace->setContentsMargins(0, 0, 0, 0);
    m_notLoadedPlace->addWidget(m_notLoaded);
    column->addLayout(m_notLoadedPlace);
    column->addSpacing(24);
    column->addLayout(makeVersionsHeading());
    column->addSpacing(8);
    m_versions = new VersionList(m_texts, programLines(core, m_texts));
    column->addWidget(m_versions);
    column->addStretch(1);
}

QWidget *SupportView::makeHelpCard()
{
    const QString address = QStringLiteral(SOLVANE_SUPPORT_PAGE);
    const QString link = m_core ? m_core->localizeLink(address) : address;
    const QString title = m_texts(u"SZ_SUPPORT_HELP_LINK"_s, u"Open the help page"_s);
    auto *label = new LinkLabel(link, title);
    label->setToolTip(link.toHtmlEscaped());
    connect(label, &QLabel::linkActivated, this, &SupportView::openHelpPage);
    m_noBrowser = makeParagraph(QString(), look::warningText);
    m_noBrowser->hide();
    auto *action = new QVBoxLayout;
    action->setSpacing(6);
    action->addWidget(label);
    action->addWidget(m_noBrowser);
    return makeCard(m_texts(u"SZ_SUPPORT_HELP"_s, u"Help page"_s),
                    m_texts(u"SZ_SUPPORT_HELP_INFO"_s,
                            u"Answers to common questions, and guides that go step by step."_s),
                    action);
}

QWidget *SupportView::makeFeedbackCard()
{
    auto *button = makeButton(m_texts(u"SZ_SUPPORT_FEEDBACK_SEND"_s, u"Send feedback\u2026"_s));
    connect(button, &QPushButton::clicked, this, [this] {
        if (m_core)
            m_core->uiSendFeedback();
    });
    auto *row = new QHBoxLayout;
    row->addWidget(button);
    row->addStretch(1);
    auto *action = new QVBoxLayout;
    action->setSpacing(8);
    action->addLayout(row);
    if (m_core) {
        auto *sent =
            new LinkLabel(u"#"_s, m_texts(u"SZ_SUPPORT_SENT"_s, u"Show or hide what is sent"_s));
        connect(sent, &QLabel::linkActivated, this, &SupportView::toggleSentFacts);
        action->addWidget(sent);
    }
    return makeCard(m_texts(u"SZ_SUPPORT_FEEDBACK"_s, u"Feedback"_s),
                    m_texts(u"SZ_SUPPORT_FEEDBACK_INFO"_s,
                            u"Tell us what you like, what you miss and what went wrong."_s),
                    action);
}

/// Read anew each time they are asked for.
void SupportView::toggleSentFacts()
{
    if (m_sent) {
        delete m_sent;
        m_sentPlace->setContentsMargins(0, 0, 0, 0);
        return;
    }
    m_sent = new SentFactsCard(m_core, m_texts);
    m_sentPlace->setContentsMargins(0, look::gap, 0, 0);
    m_sentPlace->addWidget(m_sent);
}

QLayout *SupportView::makeVersionsHeading()
{
    m_copied = makeParagraph(QString(), look::secondaryText);
    m_copied->setWordWrap(false);
    auto *button = makeButton(m_texts(u"SZ_SUPPORT_COPY"_s, u"Copy"_s));
    button->setAccessibleName(m_texts(u"SZ_SUPPORT_COPY_SPOKEN"_s, u"Copy the versions"_s));
    connect(button, &QPushButton::clicked, this, &SupportView::copyVersions);
    m_copiedTimer.setSingleShot(true);
    m_copiedTimer.setInterval(3000);
    connect(&m_copiedTimer, &QTimer::timeout, m_copied, &QLabel::clear);
    auto *row = new QHBoxLayout;
    row->setSpacing(12);
    row->addWidget(makeHeading(m_texts(u"SZ_SUPPORT_VERSIONS"_s, u"Versions"_s), 1.0), 1);
    row->addWidget(m_copied);
    row->addWidget(button);
    return row;
}

void SupportView::refresh()
{
    m_notLoaded->refresh();
    m_notLoadedPlace->setContentsMargins(0, m_notLoaded->isHidden() ? 0 : look::gap, 0, 0);
    const QString added = m_core
        ? m_core->stringByExpandingTildeInPath(u"~/Library/Application Support/Solvane"_s)
        : QString();
    std::shared_ptr<QObject> reader;
    if (m_core)
        reader = m_core->newFactoryInstance(u"appBundle"_s);
    m_jobs.start(u"versions"_s, [this, reader, own = m_ownFolder, added] {
        auto *infos = qobject_cast<appBundleInfoProtocol *>(reader.get());
        return [this, versions = readBundleVersions(infos, own, added)] {
            m_versions->setPlugins(versions);
        };
    });
}

QString SupportView::versionsText() const
{
    return m_versions->plainText();
}

void SupportView::openHelpPage(const QString &link)
{
    m_noBrowser->setText(m_texts(u"SZ_SUPPORT_NO_BROWSER"_s,
                                 u"The browser could not be opened. The address is %1"_s, {link}));
    auto *workspace = m_core
        ? qobject_cast<mndWorkspace *>(m_core->sharedObject(u"SHARED.WORKSPACE"_s))
        : nullptr;
    const auto tell = [label = QPointer<QLabel>(m_noBrowser)] {
        if (label)
            label->show();
    };
    m_noBrowser->setVisible(!workspace || !workspace->openUrl(link, tell));
}

void SupportView::copyVersions()
{
    QGuiApplication::clipboard()->setText(versionsText());
    m_copied->setText(m_texts(u"SZ_SUPPORT_COPIED"_s, u"Copied"_s));
    m_copiedTimer.start();
    QAccessibleEvent said(m_copied, QAccessible::Alert);
    QAccessible::updateAccessibility(&said);
}
