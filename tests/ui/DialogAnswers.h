#pragma once

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <functional>
#include <vector>

namespace orv::test {

// Answers the next dialog that opens modally, as a user would: answer sets its fields and closes
// it (accept or reject). Polls, because the dialog's own event loop runs inside the call that
// opened it. The dialog is named by its class, so a test can tell which question came.
class DialogAnswers
{
public:
    using Answer = std::function<void(QDialog &)>;

    DialogAnswers()
    {
        QObject::connect(&m_poll, &QTimer::timeout, [this] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (!dialog || m_answers.empty())
                return;
            asked.append(QString::fromLatin1(dialog->metaObject()->className()));
            const Answer answer = m_answers.front();
            m_answers.erase(m_answers.begin());
            answer(*dialog);
            if (m_answers.empty())
                m_poll.stop();
        });
    }

    void answerNext(Answer answer)
    {
        m_answers.push_back(std::move(answer));
        if (!m_poll.isActive())
            m_poll.start(10);
    }

    // The class names of the dialogs answered, in order.
    QStringList asked;

private:
    std::vector<Answer> m_answers;
    QTimer m_poll;
};

inline void accept(QDialog &dialog) { dialog.accept(); }
inline void reject(QDialog &dialog) { dialog.reject(); }

} // namespace orv::test
