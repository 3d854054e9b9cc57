#pragma once

#include <QListView>

class Theme;

/// The list that opens under a field with what may be meant.
class SuggestionList : public QListView {
    Q_OBJECT

public:
    /// \param theme outlives the list.
    explicit SuggestionList(const Theme& theme);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& m_theme;
};
