// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QClipboard>
#include <QLineEdit>

// A fact in a panel: looks like a label and elides what does not fit, with the full text in a tool
// tip; its text can be selected and copied. Characters that a line cannot show are replaced on
// screen, but copied unchanged.
class FactField : public QLineEdit
{
    Q_OBJECT
public:
    explicit FactField(QWidget *parent = nullptr);

    void setFact(const QString &fact);
    void setExplanation(const QString &explanation); // what the fact means, for the tool tip
    void copy() const;                               // copies the selected part of the fact
    // Drawn like a placeholder, for a text that replaces a missing fact.
    void setDimmed(bool dimmed);
    // Drawn like a link; Return and Ctrl+click follow it.
    void setLink(bool isLink);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void linkFollowed(bool inNewWindow); // Ctrl+Return, or the middle button

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void copyTo(QClipboard::Mode clipboard) const;
    bool isClipped() const;
    void updateColors();
    void updateToolTip();

    QString fact_;
    QString explanation_;
    bool isDimmed_ = false;
    bool isLink_ = false;
};
