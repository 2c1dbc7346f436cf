#pragma once

#include <QObject>
#include <memory>

class Document;
class DocumentController;
class DocumentWindowController;
class QWidget;

// Ties documents to their windows: one whose last window is closed is closed too.
class DocumentWindows : public QObject
{
    Q_OBJECT
public:
    explicit DocumentWindows(DocumentController &documents);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watch(DocumentWindowController &controller);
    void noteWindowClosed(const QWidget &window);

    DocumentController &documents_;
    std::shared_ptr<void> life_ = std::make_shared<char>();
};
