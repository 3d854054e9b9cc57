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
    /// What a panel of variable width leaves to the list before it grows.
    static constexpr int kListComfort = 736;
    /// What becomes of the panel where the list needs the room.
    enum class Narrow { Over, Without };

    /// Has no panel at first.
    explicit SectionBody(QWidget* parent = nullptr);

    /// The area of the list, to be given a layout.
    QWidget& content() const { return *m_content; }
    /// Takes a panel in, from another section if it is there; its width stays within its minimum and maximum. Null lets
    /// it go. \param narrow whether it lies over the list where there is no room for both, or is hidden.
    void setPanel(QWidget* panel, Narrow narrow = Narrow::Over);
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void place();

    QWidget* m_content;
    QPointer<QWidget> m_panel;
    Narrow m_narrow = Narrow::Over;
};
