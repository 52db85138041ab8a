#pragma once

#include "plugins/common/BackgroundJobs.h"
#include "plugins/common/Texts.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

class NotLoadedCard;
class QLabel;
class QVBoxLayout;
class VersionList;

/// The page that tells how to get help, and which versions to name when asking for it.
class SupportView : public QWidget
{
public:
    /// @param core the host; may be null.
    /// @param bundlePath this plugin's own bundle; its siblings are listed.
    SupportView(mndCore *core, const QString &bundlePath);

    /// Reads the versions anew, and what was not loaded.
    void refresh();

    QString versionsText() const;

private:
    QWidget *makeHelpCard();
    QWidget *makeFeedbackCard();
    QLayout *makeVersionsHeading();
    void openHelpPage(const QString &link);
    void toggleSentFacts();
    void copyVersions();

    mndCore *m_core;
    Texts m_texts;
    QString m_ownFolder;
    QLabel *m_noBrowser = nullptr;
    QLabel *m_copied = nullptr;
    QVBoxLayout *m_sentPlace = nullptr;
    QPointer<QWidget> m_sent;
    NotLoadedCard *m_notLoaded = nullptr;
    QVBoxLayout *m_notLoadedPlace = nullptr;
    VersionList *m_versions = nullptr;
    QTimer m_copiedTimer;
    BackgroundJobs m_jobs; // last, so that no result arrives at a half-destroyed view
};
