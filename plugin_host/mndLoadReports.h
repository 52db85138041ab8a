#pragma once

#include <QList>
#include <QString>
#include <QtPlugin>

/// What became of the bundles that have no plugin in this run: the shared object
/// "SHARED.LOADREPORTS", which lives as long as the program. Main thread.
class mndLoadReports
{
public:
    enum Reason {
        Refused,           ///< broken, made for another host, or not wanting to run
        LeftOutOfThisRun,  ///< as the user has asked
        LeftOutAfterCrash, ///< until a new build of it comes, or the user takes it back
    };
    struct Report
    {
        QString path; ///< of the bundle
        Reason reason = Refused;
        QString problems; ///< English, for the bundle's author
    };

    virtual ~mndLoadReports() = default;

    /// In the order in which they were met. Complete once all plugins are loaded.
    virtual QList<Report> notLoaded() = 0;
};

#define mndLoadReports_iid "com.solvane.mndLoadReports/6"
Q_DECLARE_INTERFACE(mndLoadReports, mndLoadReports_iid)
