#pragma once

#include "export/MovieFrames.h"

#include <QDialog>
#include <QFutureWatcher>
#include <QImage>

class QAction;
class QLabel;
class QListWidget;
class QMenu;
class QMediaPlayer;
class QPushButton;
class QSlider;
class QVideoFrame;
class QVideoSink;

namespace orv {

class AppController;
class MySinglePic;

// One movie in a window of its own: playback with a slider, the positions kept in it (marked
// by the user or read from its chapters) in a list, and the commands that mark, remove, choose
// and step between them, each mark, removal and choice one undo step of the owner's.
//
// The movie is first opened off the main thread through the frame reader: a movie without a
// video stream, with a broken index or without length plays nothing and says why. A movie the
// player cannot play still shows the frame at the slider's position, decoded by the frame
// reader in the background.
class MovieView : public QDialog
{
    Q_OBJECT
public:
    MovieView(AppController &controller, MySinglePic &movie, MovieFramesOpener opener, QWidget *parent = nullptr);
    ~MovieView() override;

    // Opens the view of the movie, or brings up the one that is open.
    static MovieView *showFor(AppController &controller, MySinglePic &movie, MovieFramesOpener opener,
                              QWidget *parent);

    MySinglePic &movie() const { return m_movie; }
    // Where the view stands, in seconds.
    double presentSeconds() const;
    void jumpToTime(double seconds);
    // Marks the position the view stands at; the key, or empty when it is kept already.
    QString saveMoviePosition();
    // Removes the position the view stands on (or the one chosen in the list).
    bool removeMoviePosition();
    // Chooses the position in the list as the movie's thumbnail and start, or clears it.
    bool fixateMoviePosition();
    void moveToPosition(bool isForewards);
    // The text that says why nothing plays; empty while the movie plays or can.
    QString problem() const;
    // Whether the movie was opened and can be looked at.
    bool isPlayable() const { return m_playable; }
    // The frame on show.
    const QImage &shownFrame() const { return m_frame; }

Q_SIGNALS:
    // The movie was opened (or found unplayable) in the background.
    void movieLoaded();
    // A frame decoded at a position has come on show.
    void frameShown();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    struct Probe
    {
        QString problem;
        double duration = 0.0;
        double rotation = 0.0;
        QList<double> chapters;
        QImage frame;
    };
    void buildWidgets();
    void buildActions();
    // The commands, then every position kept, the present one checked, to go to.
    void addPositionsMenuTo(QMenu &menu);
    void probeEnded();
    void refreshPositions();
    void refreshState();
    void showFrame(const QImage &frame);
    void playerFrame(const QVideoFrame &frame);
    // A frame decoded by the reader at the position, when the player does not give one.
    void decodeFrameAt(double seconds);
    void sliderMoved(int milliseconds);
    void setProblem(const QString &problem);
    QString selectedKey() const;

    AppController &m_controller;
    MySinglePic &m_movie;
    MovieFramesOpener m_opener;
    QFutureWatcher<Probe> m_probe;
    QFutureWatcher<QImage> m_decode;
    double m_pendingDecode = -1.0;
    double m_duration = 0.0;
    double m_rotation = 0.0; // of the movie's frames, which the player leaves as they are
    double m_position = 0.0;
    bool m_playable = false;
    bool m_playerFailed = false;
    QImage m_frame;
    QMediaPlayer *m_player = nullptr;
    QVideoSink *m_sink = nullptr;
    QLabel *m_picture;
    QLabel *m_message;
    QLabel *m_time;
    QSlider *m_slider;
    QPushButton *m_play;
    QPushButton *m_positionsButton;
    QListWidget *m_positions;
    QAction *m_mark = nullptr, *m_remove = nullptr, *m_choose = nullptr, *m_next = nullptr, *m_previous = nullptr;
};

} // namespace orv
