#include "ui/MovieView.h"

#include "app/AppController.h"
#include "core/MySinglePic.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"

#include <QAction>
#include <QAudioDevice>
#include <QAudioOutput>
#include <QBuffer>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMediaDevices>
#include <QMediaPlayer>
#include <QMenu>
#include <QPushButton>
#include <QSlider>
#include <QTransform>
#include <QUndoStack>
#include <QUrl>
#include <QVBoxLayout>
#include <QVideoFrame>
#include <QVideoSink>
#include <QtConcurrent/QtConcurrentRun>

#include <cmath>

namespace orv {

namespace {

constexpr int thumbSize = 160;

QString timeText(double seconds)
{
    const qint64 milliseconds = qint64(std::llround(seconds * 1000.0));
    return QStringLiteral("%1:%2.%3")
        .arg(milliseconds / 60000)
        .arg(milliseconds / 1000 % 60, 2, 10, QLatin1Char('0'))
        .arg(milliseconds % 1000, 3, 10, QLatin1Char('0'));
}

// The thumbnail of a position, as compressed bytes; empty when there is no frame.
QByteArray thumbnailOf(const QImage &frame)
{
    if (frame.isNull())
        return {};
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    frame.scaled(thumbSize, thumbSize, Qt::KeepAspectRatio, Qt::SmoothTransformation).save(&buffer, "JPEG", 80);
    return bytes;
}

QImage frameAt(const MovieFramesOpener &opener, const QString &path, double seconds)
{
    QString why;
    std::unique_ptr<MovieFrames> frames = opener(path, why);
    return frames ? frames->frameAt(seconds, why) : QImage();
}

} // namespace

MovieView::MovieView(AppController &controller, MySinglePic &movie, MovieFramesOpener opener, QWidget *parent)
    : QDialog(parent), m_controller(controller), m_movie(movie), m_opener(std::move(opener))
{
    setObjectName(QStringLiteral("movieView"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(movie.spName);
    buildWidgets();
    buildActions();
    m_position = MoviePositions::of(movie).movCurrentTime.seconds();

    connect(&m_controller, &AppController::moviePositionsChanged, this, [this](MySinglePic *changed) {
        if (changed == &m_movie)
            refreshPositions();
    });
    // The movie's folder leaves the working set: the view has nothing left to show.
    connect(&m_controller.theDataSource(), &MyDroppedFolders::folderRemoved, this, [this](MySingleFolder *folder) {
        if (MySingleFolder::of(m_movie) == folder)
            close();
    });
    connect(&m_probe, &QFutureWatcher<Probe>::finished, this, &MovieView::probeEnded);
    connect(&m_decode, &QFutureWatcher<QImage>::finished, this, [this] {
        showFrame(m_decode.result());
        Q_EMIT frameShown();
        if (m_pendingDecode >= 0.0)
            decodeFrameAt(std::exchange(m_pendingDecode, -1.0));
    });

    setProblem(tr("Opening the movie…"));
    m_probe.setFuture(QtConcurrent::run([opener = m_opener, path = movie.spPath(), at = m_position] {
        Probe probe;
        std::unique_ptr<MovieFrames> frames = opener(path, probe.problem);
        if (!frames)
            return probe;
        probe.duration = frames->duration();
        probe.rotation = frames->displayRotation();
        if (probe.duration <= 0.0) {
            probe.problem = tr("the movie has no length");
            return probe;
        }
        probe.chapters = frames->chapterStarts();
        QString why;
        // A position kept beyond the end of a movie since cut short starts it from the beginning.
        probe.frame = frames->frameAt(at < probe.duration ? at : 0.0, why);
        if (probe.frame.isNull())
            probe.problem = why;
        return probe;
    }));
    refreshPositions();
    refreshState();
}

MovieView::~MovieView()
{
    // The player goes first and tells this view nothing more: the owner may already be gone.
    if (m_player) {
        m_player->disconnect(this);
        delete m_player;
    }
    m_probe.waitForFinished();
    m_decode.waitForFinished();
}

MovieView *MovieView::showFor(AppController &controller, MySinglePic &movie, MovieFramesOpener opener, QWidget *parent)
{
    for (MovieView *open : parent->findChildren<MovieView *>()) {
        if (&open->movie() == &movie) {
            open->raise();
            open->activateWindow();
            return open;
        }
    }
    auto *view = new MovieView(controller, movie, std::move(opener), parent);
    view->resize(720, 560);
    view->show();
    return view;
}

void MovieView::buildWidgets()
{
    m_picture = new QLabel(this);
    m_picture->setObjectName(QStringLiteral("moviePicture"));
    m_picture->setAlignment(Qt::AlignCenter);
    m_picture->setMinimumSize(320, 200);
    m_picture->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    m_picture->setStyleSheet(QStringLiteral("background: black; color: white;"));
    m_message = new QLabel(this);
    m_message->setObjectName(QStringLiteral("movieMessage"));
    m_message->setWordWrap(true);
    m_play = new QPushButton(tr("Play"), this);
    m_play->setObjectName(QStringLiteral("moviePlay"));
    m_slider = new QSlider(Qt::Horizontal, this);
    m_slider->setObjectName(QStringLiteral("movieSlider"));
    // Milliseconds: arrows step a tenth of a second, a click beside the handle a second.
    m_slider->setSingleStep(100);
    m_slider->setPageStep(1000);
    m_time = new QLabel(timeText(0.0), this);
    m_positionsButton = new QPushButton(tr("Positions"), this);
    m_positionsButton->setObjectName(QStringLiteral("moviePositionsMenu"));
    m_positions = new QListWidget(this);
    m_positions->setObjectName(QStringLiteral("moviePositions"));
    m_positions->setIconSize(QSize(thumbSize / 2, thumbSize / 2));
    m_positions->setMaximumWidth(220);
    m_positions->setContextMenuPolicy(Qt::ActionsContextMenu);

    auto *controls = new QHBoxLayout;
    controls->addWidget(m_play);
    controls->addWidget(m_slider, 1);
    controls->addWidget(m_time);
    controls->addWidget(m_positionsButton);
    auto *left = new QVBoxLayout;
    left->addWidget(m_picture, 1);
    left->addWidget(m_message);
    left->addLayout(controls);
    auto *layout = new QHBoxLayout(this);
    layout->addLayout(left, 1);
    layout->addWidget(m_positions);

    connect(m_play, &QPushButton::clicked, this, [this] {
        if (!m_player)
            return;
        if (m_player->playbackState() == QMediaPlayer::PlayingState)
            m_player->pause();
        else
            m_player->play();
    });
    connect(m_slider, &QSlider::sliderMoved, this, &MovieView::sliderMoved);
    connect(m_slider, &QSlider::actionTriggered, this, [this] {
        if (!m_slider->isSliderDown())
            sliderMoved(m_slider->sliderPosition());
    });
    connect(m_positions, &QListWidget::itemActivated, this, [this](QListWidgetItem *item) {
        jumpToTime(item->data(Qt::UserRole + 1).toDouble());
    });
}

void MovieView::buildActions()
{
    const auto add = [this](const QString &text, const QKeySequence &key, const char *name, auto slot) {
        auto *action = new QAction(text, this);
        action->setObjectName(QString::fromLatin1(name));
        action->setShortcut(key);
        action->setShortcutContext(Qt::WindowShortcut);
        connect(action, &QAction::triggered, this, slot);
        addAction(action);
        return action;
    };
    m_mark = add(tr("Mark Position"), QKeySequence(Qt::Key_M), "markPositionAction", [this] { saveMoviePosition(); });
    m_remove = add(tr("Remove Position"), QKeySequence(Qt::Key_Delete), "removePositionAction",
                   [this] { removeMoviePosition(); });
    m_choose = add(tr("Use as Thumbnail and Start"), QKeySequence(Qt::Key_T), "choosePositionAction",
                   [this] { fixateMoviePosition(); });
    m_previous = add(tr("Previous Position"), QKeySequence(Qt::Key_BracketLeft), "previousPositionAction",
                     [this] { moveToPosition(false); });
    m_next = add(tr("Next Position"), QKeySequence(Qt::Key_BracketRight), "nextPositionAction",
                 [this] { moveToPosition(true); });
    add(tr("Play or Pause"), QKeySequence(Qt::Key_Space), "playAction", [this] { m_play->click(); });
    QAction *undo = m_controller.uManager().createUndoAction(this);
    undo->setShortcut(QKeySequence::Undo);
    addAction(undo);
    QAction *redo = m_controller.uManager().createRedoAction(this);
    redo->setShortcut(QKeySequence::Redo);
    addAction(redo);
    for (QAction *action : {m_remove, m_choose})
        m_positions->addAction(action);
    // The same commands as a menu on the picture, and in the Positions menu with the positions.
    m_picture->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_picture->addActions({m_mark, m_remove, m_choose, m_previous, m_next});
    auto *menu = new QMenu(m_positionsButton);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] { addPositionsMenuTo(*menu); });
    m_positionsButton->setMenu(menu);
}

void MovieView::addPositionsMenuTo(QMenu &menu)
{
    menu.clear();
    menu.addActions({m_mark, m_remove, m_choose, m_previous, m_next});
    const MoviePositions positions = MoviePositions::of(m_movie);
    if (!positions.movPositions.isEmpty())
        menu.addSeparator();
    for (const MoviePosition &position : positions.sortedPositions()) {
        const QString key = MoviePositions::keyFor(position.seconds);
        QAction *go = menu.addAction(timeText(position.seconds), this, [this, seconds = position.seconds] {
            jumpToTime(seconds);
        });
        go->setCheckable(true);
        go->setChecked(key == positions.currentMovPosKey);
    }
}

void MovieView::probeEnded()
{
    const Probe probe = m_probe.result();
    if (!probe.problem.isEmpty()) {
        setProblem(tr("This movie cannot be played: %1.").arg(probe.problem));
        Q_EMIT movieLoaded();
        return;
    }
    m_playable = true;
    m_duration = probe.duration;
    m_rotation = probe.rotation;
    if (m_position >= m_duration)
        m_position = 0.0;
    m_slider->setRange(0, int(std::lround(m_duration * 1000.0)));
    m_slider->setValue(int(std::lround(m_position * 1000.0)));
    m_controller.moviePositions().loadChaptersForAsset(m_movie, probe.chapters);
    showFrame(probe.frame);
    setProblem({});

    // Movies play through FFmpeg, as the frame reader and the stills read them, unless the user
    // asks for another backend: Qt reads the choice when the first player is made, and Debian's
    // GStreamer backend crashes where its plugins are missing.
    if (qEnvironmentVariableIsEmpty("QT_MEDIA_BACKEND"))
        qputenv("QT_MEDIA_BACKEND", "ffmpeg");
    m_player = new QMediaPlayer(this);
    m_sink = new QVideoSink(this);
    m_player->setVideoSink(m_sink);
    // Without a sound device, the player's FFmpeg backend (Qt 6.4) crashes in its audio thread as
    // soon as it plays: the movie then plays silent.
    if (!QMediaDevices::defaultAudioOutput().isNull())
        m_player->setAudioOutput(new QAudioOutput(this));
    connect(m_sink, &QVideoSink::videoFrameChanged, this, &MovieView::playerFrame);
    connect(m_player, &QMediaPlayer::positionChanged, this, [this](qint64 milliseconds) {
        if (m_player->playbackState() != QMediaPlayer::PlayingState)
            return;
        m_position = double(milliseconds) / 1000.0;
        if (!m_slider->isSliderDown())
            m_slider->setValue(int(milliseconds));
        refreshState();
    });
    connect(m_player, &QMediaPlayer::playbackStateChanged, this, [this](QMediaPlayer::PlaybackState state) {
        m_play->setText(state == QMediaPlayer::PlayingState ? tr("Pause") : tr("Play"));
        if (state != QMediaPlayer::PlayingState)
            m_controller.moviePositions().standAt(m_movie, m_position);
        refreshState();
    });
    connect(m_player, &QMediaPlayer::errorOccurred, this, [this](QMediaPlayer::Error, const QString &text) {
        // The frames still come from the reader; only playing is gone.
        m_playerFailed = true;
        setProblem(tr("The player cannot play this movie (%1); the frames are shown still.").arg(text));
    });
    m_player->setSource(QUrl::fromLocalFile(m_movie.spPath()));
    refreshPositions();
    Q_EMIT movieLoaded();
}

void MovieView::setProblem(const QString &problem)
{
    m_message->setText(problem);
    m_message->setVisible(!problem.isEmpty());
    refreshState();
}

QString MovieView::problem() const
{
    return m_message->text();
}

double MovieView::presentSeconds() const
{
    return m_position;
}

void MovieView::playerFrame(const QVideoFrame &frame)
{
    // Only a playing player's frames are the position's: a paused one's come from its last seek.
    if (!m_player || m_player->playbackState() != QMediaPlayer::PlayingState || !frame.isValid())
        return;
    // The player's frames come as stored; a phone movie's are turned upright here, as the frame
    // reader turns its own.
    const double angle = frame.rotationAngle() != QVideoFrame::Rotation0 ? double(frame.rotationAngle()) : -m_rotation;
    const QImage image = frame.toImage();
    showFrame(angle == 0.0 ? image : image.transformed(QTransform().rotate(angle)));
}

void MovieView::showFrame(const QImage &frame)
{
    if (frame.isNull())
        return;
    m_frame = frame;
    m_picture->setPixmap(QPixmap::fromImage(
        frame.scaled(m_picture->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation)));
}

void MovieView::sliderMoved(int milliseconds)
{
    if (!m_playable)
        return;
    m_position = double(milliseconds) / 1000.0;
    if (m_player && !m_playerFailed)
        m_player->setPosition(milliseconds);
    // The exact frame comes from the reader, also while the player seeks on its own.
    if (!m_player || m_player->playbackState() != QMediaPlayer::PlayingState)
        decodeFrameAt(m_position);
    m_controller.moviePositions().standAt(m_movie, m_position);
    refreshState();
}

void MovieView::decodeFrameAt(double seconds)
{
    if (m_decode.isRunning()) {
        m_pendingDecode = seconds;
        return;
    }
    m_decode.setFuture(QtConcurrent::run(
        [opener = m_opener, path = m_movie.spPath(), seconds] { return frameAt(opener, path, seconds); }));
}

void MovieView::jumpToTime(double seconds)
{
    if (!m_playable)
        return;
    if (m_player)
        m_player->pause();
    const int milliseconds = int(std::lround(std::clamp(seconds, 0.0, m_duration) * 1000.0));
    m_slider->setValue(milliseconds);
    sliderMoved(milliseconds);
}

QString MovieView::saveMoviePosition()
{
    if (!m_playable)
        return {};
    const bool wasPlaying = m_player && m_player->playbackState() == QMediaPlayer::PlayingState;
    if (wasPlaying)
        m_player->pause();
    const QString key =
        m_controller.moviePositions().saveMoviePosition(m_movie, m_position, thumbnailOf(m_frame));
    if (wasPlaying)
        m_player->play();
    return key;
}

QString MovieView::selectedKey() const
{
    if (const QListWidgetItem *item = m_positions->currentItem(); item && item->isSelected())
        return item->data(Qt::UserRole).toString();
    return MoviePositions::of(m_movie).currentMovPosKey;
}

bool MovieView::removeMoviePosition()
{
    const QString key = selectedKey();
    return !key.isEmpty() && m_controller.moviePositions().removeMoviePosition(m_movie, key);
}

bool MovieView::fixateMoviePosition()
{
    const QString key = selectedKey();
    return !key.isEmpty() && m_controller.moviePositions().fixateMoviePosition(m_movie, key);
}

void MovieView::moveToPosition(bool isForewards)
{
    const MoviePositions positions = MoviePositions::of(m_movie);
    const QString key = positions.positionKeyFor(m_position, isForewards);
    if (!key.isEmpty())
        jumpToTime(positions.movPositions.value(key).seconds);
}

void MovieView::refreshPositions()
{
    const MoviePositions positions = MoviePositions::of(m_movie);
    m_positions->clear();
    for (const MoviePosition &position : positions.sortedPositions()) {
        const QString key = MoviePositions::keyFor(position.seconds);
        QString text = timeText(position.seconds);
        if (position.isSaved && positions.movPositionThumbs.value(key).isEmpty())
            text += tr(" (chapter)");
        if (key == positions.chapterMovPosKey)
            text += tr(" ★");
        auto *item = new QListWidgetItem(text, m_positions);
        item->setData(Qt::UserRole, key);
        item->setData(Qt::UserRole + 1, position.seconds);
        QImage thumb;
        if (thumb.loadFromData(positions.movPositionThumbs.value(key)))
            item->setIcon(QIcon(QPixmap::fromImage(thumb)));
    }
    refreshState();
}

void MovieView::refreshState()
{
    m_time->setText(timeText(m_position) + QStringLiteral(" / ") + timeText(m_duration));
    const bool hasPositions = m_positions->count() > 0;
    m_slider->setEnabled(m_playable);
    m_play->setEnabled(m_playable && !m_playerFailed);
    if (!m_mark)
        return;
    m_mark->setEnabled(m_playable);
    m_remove->setEnabled(hasPositions);
    m_choose->setEnabled(hasPositions);
    m_previous->setEnabled(hasPositions && m_playable);
    m_next->setEnabled(hasPositions && m_playable);
}

void MovieView::closeEvent(QCloseEvent *event)
{
    if (m_player)
        m_player->stop();
    QDialog::closeEvent(event);
}

} // namespace orv
