#pragma once

#include <QHeaderView>

class Theme;

/// The headings of a list: small capitals over a hairline.
class ColumnHeader : public QHeaderView {
    Q_OBJECT

public:
    ColumnHeader(const Theme& theme, QWidget* parent = nullptr);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;

private:
    const Theme& m_theme;
};
