#pragma once

#include "app/MovieStillRun.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QDialogButtonBox;
class QDoubleSpinBox;
class QLabel;
class QProgressBar;
class QSpinBox;
class QStackedWidget;

namespace orv {

class AppController;
class MySinglePic;

// The sheet that turns the positions kept in the selected movies into stills or Live Photo
// pairs: the format and its quality, pairs or stills, the import of the results; then the
// run's progress with a Cancel, and at its end what was made, what existed and what failed.
// Window-modal from start to end: the items stay as they were taken while the files are made.
class MovieStillSheet : public QDialog
{
    Q_OBJECT
public:
    MovieStillSheet(AppController &controller, const QList<MySinglePic *> &movies, MovieFramesOpener opener,
                    QWidget *window);

    // Starts the run with the settings on show (the Export button).
    void continueExport();
    // Stops the run before its next still (the Cancel button while it runs).
    void abortExport();
    MovieStillRun &run() { return m_run; }
    // The report at the end: one line per movie and one per failure.
    QString errorString() const { return m_report; }

Q_SIGNALS:
    // The run has ended and its report is on show.
    void exportEnded();

private:
    QWidget *buildSettingsPage();
    QWidget *buildProgressPage();
    void loadSettings();
    void storeSettings();
    void showQualityForFormat();
    void endCoverExportOnMainThread(const QList<MovieStillResult> &results);
    void reject() override;

    AppController &m_controller;
    MovieStillRun m_run;
    QList<MovieStillJob> m_jobs;
    QStringList m_problems;
    QString m_report;
    QStackedWidget *m_pages;
    QComboBox *m_format;
    QDoubleSpinBox *m_quality;
    QCheckBox *m_compressTiff;
    QCheckBox *m_livePhotos;
    QSpinBox *m_liveLength;
    QCheckBox *m_importResults;
    QLabel *m_summary;
    QLabel *m_status;
    QProgressBar *m_bar;
    QDialogButtonBox *m_buttons;
};

} // namespace orv
