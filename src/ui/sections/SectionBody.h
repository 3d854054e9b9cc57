#pragma once

#include <QPointer>
#include <QWidget>

/// The part of a section below its header: the list, and a panel at its right for as long as that is shown. The list
/// gives way down to what it needs; in a narrower window the panel lies over its right end.
class SectionBody : public QWidget {
    Q_OBJECT

public:
    /// The table's columns that never leave.
    static constexpr int kListMinimum = 404;

    explicit SectionBody(QWidget* parent = nullptr);

    QWidget& content() const { return *m_content; }
    /// Takes a panel of fixed width in, from another section if it is there. Null lets it go.
    void setPanel(QWidget* panel);
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void place();

    QWidget* m_content;
    QPointer<QWidget> m_panel;
};
