#pragma once

#include "platform/ui/MainWindow.h"
#include "sourcelist/PXSourceList.h"

#include <QAction>
#include <QPointer>
#include <QPushButton>

/// What the main interface file connects: the window, its views and the entries of its menus. Any
/// of them may be gone. Main thread.
class MainMenuOutlets : public QObject
{
    Q_OBJECT
    Q_PROPERTY(MainWindow *window READ window WRITE setWindow)
    Q_PROPERTY(PXSourceList *sourceList MEMBER sourceList)
    Q_PROPERTY(QWidget *pluginViewHost MEMBER pluginViewHost)
    Q_PROPERTY(QAction *miShowMainWindow MEMBER miShowMainWindow)
    Q_PROPERTY(QAction *miShowMainWindowSeperator MEMBER miShowMainWindowSeperator)
    Q_PROPERTY(QAction *miCheckForUpdate MEMBER miCheckForUpdate)
    Q_PROPERTY(QAction *miAbout MEMBER miAbout)
    Q_PROPERTY(QAction *miPrefs MEMBER miPrefs)
    Q_PROPERTY(QAction *miPrefsReset MEMBER miPrefsReset)
    Q_PROPERTY(QAction *miFeedback MEMBER miFeedback)
    Q_PROPERTY(QWidget *sysStatusView MEMBER sysStatusView)
    Q_PROPERTY(QPushButton *_helpbtn MEMBER _helpbtn)
    Q_PROPERTY(QAction *miServices MEMBER miServices)
    Q_PROPERTY(QAction *miHideSolvane MEMBER miHideSolvane)
    Q_PROPERTY(QAction *miHideOthers MEMBER miHideOthers)
    Q_PROPERTY(QAction *miShowAll MEMBER miShowAll)
    Q_PROPERTY(QAction *miQuit MEMBER miQuit)
    Q_PROPERTY(QAction *miWindow MEMBER miWindow)
    Q_PROPERTY(QAction *miMinimize MEMBER miMinimize)
    Q_PROPERTY(QAction *miZoom MEMBER miZoom)
    Q_PROPERTY(QAction *miBringToFront MEMBER miBringToFront)
    Q_PROPERTY(QAction *miHelp MEMBER miHelp)
    Q_PROPERTY(QAction *miHelpLink MEMBER miHelpLink)
    Q_PROPERTY(QAction *miExtendedLogging MEMBER miExtendedLogging)
    Q_PROPERTY(QAction *miExtendedLoggingEnable MEMBER miExtendedLoggingEnable)
    Q_PROPERTY(QAction *miExtendedLoggingSend MEMBER miExtendedLoggingSend)

public:
    MainWindow *window() const { return _window; }
    void setWindow(MainWindow *window) { _window = window; }

protected:
    QPointer<MainWindow> _window;
    QPointer<PXSourceList> sourceList;
    QPointer<QWidget> pluginViewHost;
    QPointer<QAction> miShowMainWindow;
    QPointer<QAction> miShowMainWindowSeperator;
    QPointer<QAction> miCheckForUpdate, miAbout, miPrefs, miPrefsReset, miFeedback;
    QPointer<QWidget> sysStatusView;
    QPointer<QPushButton> _helpbtn;
    QPointer<QAction> miServices, miHideSolvane, miHideOthers, miShowAll, miQuit;
    QPointer<QAction> miWindow, miMinimize, miZoom, miBringToFront;
    QPointer<QAction> miHelp, miHelpLink;
    QPointer<QAction> miExtendedLogging, miExtendedLoggingEnable, miExtendedLoggingSend;
};
