#pragma once

#include "export/MovieFrames.h"

#include <QObject>

class QAction;
class QMenu;
class QWidget;

namespace orv {

class AppController;
class EditActions;
class MovieStillSheet;
class MovieView;
class MySinglePic;

// The Movie menu: the selected movie in its own view (playback and positions), and the export
// of the positions kept in the selected movies as stills or Live Photo pairs.
class MovieActions : public QObject
{
    Q_OBJECT
public:
    MovieActions(AppController &controller, const EditActions &selection, QWidget *window);

    void addTo(QMenu &menu);
    // The view of the selected movie; none without one.
    MovieView *openMovie();
    // The export sheet over the selected movies; none without movies.
    MovieStillSheet *exportStills();

private:
    QList<MySinglePic *> selectedMovies() const;

    AppController &m_controller;
    const EditActions &m_selection;
    QWidget *m_window;
    MovieFramesOpener m_opener;
};

} // namespace orv
