#pragma once

#include <QString>

/// What the feedback page is told of the machine and the installation, each as it goes into the
/// address. Only the path can name a person: the program may lie in a home folder.
struct FeedbackFacts
{
    QString appid = {}; ///< anonymous
    QString lang = {};
    QString appver = {};
    QString apped = {}; ///< "WWW" or "MAS"
    QString mode = QStringLiteral("PRO");
    QString cpu = {}; ///< count@MHz
    QString ram = {}; ///< megabytes
    QString hdd = {}; ///< total:free
    QString model = {};
    QString os = {};
    QString path = {}; ///< file URL
};

/// The address of the feedback page (RFC 3986), with these facts in its query.
///
/// The facts are put in as they are, one placeholder after the other: what a fact holds that has a
/// meaning in an address has it there, too, and a fact that holds a later placeholder gets that
/// one's value. Pure; any thread.
QString feedbackAddress(const FeedbackFacts &facts);
