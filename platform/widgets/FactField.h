#pragma once

#include <QClipboard>
#include <QLineEdit>

// A fact in a panel: looks like a label, elides what does not fit and tells it in a tool tip, yet
// its text can be selected and copied by mouse and keyboard. What a line cannot show is replaced by
// visible characters, and copied as it is.
class FactField : public QLineEdit
{
    Q_OBJECT
public:
    explicit FactField(QWidget *parent = nullptr);

    void setFact(const QString &fact);
    void setExplanation(const QString &explanation); // of what the fact means, for the tool tip
    void copy() const;                               // of the fact, what is selected
    // Drawn like a placeholder, for a text that stands for the lack of a fact.
    void setDimmed(bool dimmed);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void copyTo(QClipboard::Mode clipboard) const;
    bool isClipped() const;
    void updateToolTip();

    QString fact_;
    QString explanation_;
    bool isDimmed_ = false;
};
