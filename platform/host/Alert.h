#pragma once

#include <QStringList>
#include <functional>

class QWidget;

// A question or a message that the user answers with one of its buttons.
struct Alert
{
    QString title;
    QString message;
    QStringList buttons;       // the first is the default, the last what the Escape key means
    QString details = {};      // below the message; may be null
    QWidget *window = nullptr; // that it is about; null for the whole program
};

// Shows alerts. Without a presenter they are answered by their last button.
namespace AlertPanel {
using Answer = std::function<void(int button)>;
using Presenter = std::function<void(const Alert &alert, Answer answer)>;

void setPresenter(Presenter presenter);
// Returns at once; the answer comes later, and not at all when the window closes before.
void show(const Alert &alert, Answer answer = {});
} // namespace AlertPanel
