#include "ui/MovieActions.h"

#include "core/MySinglePic.h"
#include "movieframes/FfmpegMovieFrames.h"
#include "ui/EditActions.h"
#include "ui/MovieStillSheet.h"
#include "ui/MovieView.h"

#include <QAction>
#include <QApplication>
#include <QMenu>

namespace orv {

MovieActions::MovieActions(AppController &controller, const EditActions &selection, QWidget *window)
    : QObject(window), m_controller(controller), m_selection(selection), m_window(window),
      m_opener(&FfmpegMovieFrames::open)
{
}

void MovieActions::addTo(QMenu &menu)
{
    QAction *open = menu.addAction(tr("Open Movie"), this, &MovieActions::openMovie);
    open->setObjectName(QStringLiteral("openMovieAction"));
    open->setShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_M));
    QAction *stills = menu.addAction(tr("Export Stills from Movies…"), this, &MovieActions::exportStills);
    stills->setObjectName(QStringLiteral("exportStillsAction"));
    stills->setShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_E));
    connect(&menu, &QMenu::aboutToShow, this, [this, open, stills] {
        const bool hasMovie = !selectedMovies().isEmpty();
        open->setEnabled(hasMovie);
        stills->setEnabled(hasMovie);
    });
}

QList<MySinglePic *> MovieActions::selectedMovies() const
{
    QList<MySinglePic *> movies;
    for (MySinglePic *pic : m_selection.selectedPics()) {
        // A Live Photo's movie stands behind its still.
        MySinglePic *movie = pic->isMovie() ? pic : pic->bundleDependentImage;
        if (movie && movie->isMovie() && !movies.contains(movie))
            movies.append(movie);
    }
    return movies;
}

MovieView *MovieActions::openMovie()
{
    MySinglePic *selected = m_selection.selectedPic();
    const QList<MySinglePic *> movies = selectedMovies();
    MySinglePic *movie = selected && movies.contains(selected) ? selected : movies.value(0);
    if (!movie) {
        QApplication::beep();
        return nullptr;
    }
    return MovieView::showFor(m_controller, *movie, m_opener, m_window);
}

MovieStillSheet *MovieActions::exportStills()
{
    const QList<MySinglePic *> movies = selectedMovies();
    if (movies.isEmpty()) {
        QApplication::beep();
        return nullptr;
    }
    auto *sheet = new MovieStillSheet(m_controller, movies, m_opener, m_window);
    sheet->open();
    return sheet;
}

} // namespace orv
