#include "ui/MovieStillSheet.h"

#include "app/AppController.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace orv {

namespace {

const QString formatKey = QStringLiteral("movieStillsFormat");
const QString livePhotosKey = QStringLiteral("movieStillsExportAsLivePhotos");
const QString durationKey = QStringLiteral("livePhotoExportDuration");
const QString importKey = QStringLiteral("movieStillsImportsResultingFolders");
const QString tiffKey = QStringLiteral("movieStillsQuality1");

// The quality key of a lossy format: JPEG's, or HEIC's (written as JPEG).
QString qualityKey(int format)
{
    return format == MovieStillSettings::Heic ? QStringLiteral("movieStillsQuality3")
                                              : QStringLiteral("movieStillsQuality2");
}

} // namespace

MovieStillSheet::MovieStillSheet(AppController &controller, const QList<MySinglePic *> &movies,
                                 MovieFramesOpener opener, QWidget *window)
    : QDialog(window), m_controller(controller), m_run(controller, std::move(opener))
{
    setObjectName(QStringLiteral("movieStillSheet"));
    setWindowTitle(tr("Export Movie Stills"));
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    // The dates are taken now, as the items stand: a pending shift is in them.
    m_jobs = MovieStillRun::jobsFor(movies, m_problems);

    m_pages = new QStackedWidget(this);
    m_pages->addWidget(buildSettingsPage());
    m_pages->addWidget(buildProgressPage());
    m_buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_buttons->button(QDialogButtonBox::Ok)->setText(tr("Export"));
    m_buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("movieStillsExport"));
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(!m_jobs.isEmpty());
    connect(m_buttons, &QDialogButtonBox::accepted, this, &MovieStillSheet::continueExport);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &MovieStillSheet::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_pages);
    layout->addWidget(m_buttons);

    connect(&m_run, &MovieStillRun::progressChanged, this, [this](qsizetype done, qsizetype total) {
        m_bar->setMaximum(int(total));
        m_bar->setValue(int(done));
    });
    connect(&m_run, &MovieStillRun::finished, this, &MovieStillSheet::endCoverExportOnMainThread);
    loadSettings();
}

QWidget *MovieStillSheet::buildSettingsPage()
{
    auto *page = new QWidget(this);
    qsizetype positions = 0;
    for (const MovieStillJob &job : std::as_const(m_jobs))
        positions += job.positions.size();
    m_summary = new QLabel(page);
    m_summary->setWordWrap(true);
    QString text = tr("%n position(s) kept in %1 movie(s) become files beside each movie.", nullptr, int(positions))
                       .arg(m_jobs.size());
    if (!m_problems.isEmpty())
        text += QLatin1Char('\n') + m_problems.join(QLatin1Char('\n'));
    m_summary->setText(text);

    m_format = new QComboBox(page);
    m_format->setObjectName(QStringLiteral("movieStillsFormat"));
    m_format->addItems({tr("TIFF"), tr("JPEG"), tr("HEIC (written as JPEG)")});
    m_quality = new QDoubleSpinBox(page);
    m_quality->setRange(1.0, 100.0);
    m_quality->setDecimals(0);
    m_quality->setSuffix(QStringLiteral(" %"));
    m_compressTiff = new QCheckBox(tr("Compressed (LZW)"), page);
    m_livePhotos = new QCheckBox(tr("Live Photo pairs (a JPEG and a short movie)"), page);
    m_livePhotos->setObjectName(QStringLiteral("movieStillsExportAsLivePhotos"));
    m_liveLength = new QSpinBox(page);
    m_liveLength->setRange(1, 10);
    m_liveLength->setSuffix(tr(" s"));
    m_importResults = new QCheckBox(tr("Import the new folders"), page);

    auto *form = new QFormLayout(page);
    form->addRow(m_summary);
    form->addRow(tr("Format:"), m_format);
    form->addRow(tr("Quality:"), m_quality);
    form->addRow(QString(), m_compressTiff);
    form->addRow(QString(), m_livePhotos);
    form->addRow(tr("Movie length:"), m_liveLength);
    form->addRow(QString(), m_importResults);
    connect(m_format, &QComboBox::currentIndexChanged, this, &MovieStillSheet::showQualityForFormat);
    connect(m_livePhotos, &QCheckBox::toggled, this, &MovieStillSheet::showQualityForFormat);
    return page;
}

QWidget *MovieStillSheet::buildProgressPage()
{
    auto *page = new QWidget(this);
    m_status = new QLabel(tr("Making the stills…"), page);
    m_status->setObjectName(QStringLiteral("movieStillsStatus"));
    m_status->setWordWrap(true);
    m_status->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_bar = new QProgressBar(page);
    m_bar->setRange(0, 0);
    auto *layout = new QVBoxLayout(page);
    layout->addWidget(m_status);
    layout->addWidget(m_bar);
    layout->addStretch();
    return page;
}

void MovieStillSheet::loadSettings()
{
    const MovieStillSettings settings = MovieStillRun::settingsFrom(m_controller.prefs());
    const Preferences &prefs = m_controller.prefs();
    m_format->setCurrentIndex(std::clamp(settings.format, 0, 2));
    m_compressTiff->setChecked(settings.tiffCompression != 0);
    m_livePhotos->setChecked(settings.livePhotos);
    m_liveLength->setValue(int(settings.livePhotoLength));
    m_importResults->setChecked(!prefs.hasValueForKey(importKey) || prefs.boolForKey(importKey));
    showQualityForFormat();
}

void MovieStillSheet::showQualityForFormat()
{
    const int format = m_format->currentIndex();
    const bool tiff = format == MovieStillSettings::Tiff && !m_livePhotos->isChecked();
    m_quality->setEnabled(!tiff);
    m_compressTiff->setEnabled(tiff);
    m_liveLength->setEnabled(m_livePhotos->isChecked());
    const Preferences &prefs = m_controller.prefs();
    const QString key = qualityKey(format);
    m_quality->setValue(prefs.hasValueForKey(key) ? prefs.doubleForKey(key)
                                                  : (format == MovieStillSettings::Heic ? 70.0 : 75.0));
}

void MovieStillSheet::storeSettings()
{
    Preferences &prefs = m_controller.prefs();
    const int format = m_format->currentIndex();
    prefs.setInteger(formatKey, format);
    if (format != MovieStillSettings::Tiff || m_livePhotos->isChecked())
        prefs.setDouble(qualityKey(format), m_quality->value());
    prefs.setInteger(tiffKey, m_compressTiff->isChecked() ? 1 : 0);
    prefs.setBool(livePhotosKey, m_livePhotos->isChecked());
    prefs.setInteger(durationKey, m_liveLength->value() - 1);
    prefs.setBool(importKey, m_importResults->isChecked());
}

void MovieStillSheet::continueExport()
{
    if (m_jobs.isEmpty() || m_run.isRunning())
        return;
    storeSettings();
    m_pages->setCurrentIndex(1);
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(false);
    m_run.start(m_jobs, MovieStillRun::settingsFrom(m_controller.prefs()));
}

void MovieStillSheet::abortExport()
{
    m_status->setText(tr("Stopping after the present still…"));
    m_run.abort();
}

void MovieStillSheet::reject()
{
    // While the run goes on, Cancel (and Escape) stop it; the sheet stays until it has ended.
    if (m_run.isRunning()) {
        abortExport();
        return;
    }
    QDialog::reject();
}

void MovieStillSheet::endCoverExportOnMainThread(const QList<MovieStillResult> &results)
{
    QStringList lines;
    for (const MovieStillResult &result : results) {
        const QString name = QFileInfo(result.movie).fileName();
        lines.append(tr("%1: %n made", nullptr, int(result.successes.size())).arg(name)
                     + (result.duplicates.isEmpty()
                            ? QString()
                            : tr(", %n existed already and left as they were", nullptr, int(result.duplicates.size()))));
        if (!result.coverFolderPath.isEmpty() && !result.successes.isEmpty())
            lines.append(QStringLiteral("\t") + result.coverFolderPath);
        for (const MovieStillResult::Failure &failure : result.failures)
            lines.append(QStringLiteral("\t")
                         + (failure.position >= 0 ? QStringLiteral("%1 s - ").arg(failure.position, 0, 'f', 3)
                                                  : QString())
                         + failure.reason);
    }
    m_report = lines.join(QLatin1Char('\n'));
    m_status->setText(m_report);
    m_bar->setMaximum(1);
    m_bar->setValue(1);
    m_buttons->setStandardButtons(QDialogButtonBox::Close);
    Q_EMIT exportEnded();
}

} // namespace orv
