#pragma once

#include <QLineEdit>

// A fact in a panel: looks like a label, elides what does not fit and tells it in a tool tip, yet
// its text can be selected and copied by mouse and keyboard.
class FactField : public QLineEdit
{
    Q_OBJECT
public:
    explicit FactField(QWidget *parent = nullptr);

    void setFact(const QString &text);
    // Drawn like a placeholder, for a text that stands for the lack of a fact.
    void setDimmed(bool dimmed);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    bool isClipped() const;
    void updateToolTip();

    bool isDimmed_ = false;
};
