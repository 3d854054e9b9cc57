#include "ui/tracks/FolderHeader.h"

#include "ui/text/Texts.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"
#include "ui/tracks/TrackListModel.h"

#include <QDir>

namespace {

/// The place of the folder with the home folder shortened.
QString place(const QString& path)
{
    const QString home = QDir::homePath();
    return path.startsWith(home + u'/') ? u'~' + path.mid(home.size()) : path;
}

} // namespace

const QString& FolderHeader::facts(const FolderRun& run) const
{
    auto known = m_facts.find(run.first);
    if (known != m_facts.end())
        return *known;
    double seconds = 0;
    const int end = std::min<int>(run.end, static_cast<int>(m_model.rows().size()));
    for (int row = run.first; row < end; ++row)
        seconds += m_model.track(row).duration();
    const QString text =
        Texts::facts({place(run.path), Texts::trackCount(run.end - run.first), Texts::totalLength(seconds)});
    return *m_facts.insert(run.first, text);
}

void FolderHeader::paint(QPainter& painter, const QRect& rect, const FolderRun& run) const
{
    const ThemeColours& c = m_context.theme.colours();
    painter.fillRect(rect, c.surface);
    painter.fillRect(rect.left(), rect.bottom(), rect.width(), Metrics::kHairline, c.line);
    constexpr int kIcon = Metrics::kIconSmall;
    const int left = rect.left() + Metrics::kSpace6;
    Icons::paint(painter, {left, rect.top() + (rect.height() - kIcon) / 2, kIcon, kIcon}, QStringLiteral("folder"),
                 c.text3);

    const QFont& strong = m_context.theme.font(TextRole::BodyStrong);
    const QString name = run.path.section(u'/', -1, -1, QString::SectionSkipEmpty);
    const int room = rect.right() - left - kIcon - Metrics::kSpace2 - Metrics::kSpace3;
    const int width = std::min(QFontMetrics(strong).horizontalAdvance(name), room);
    QRect text(left + kIcon + Metrics::kSpace2, rect.top(), width + 1, rect.height() - 1);
    Paint::line(painter, text, name.isEmpty() ? run.path : name, strong, c.text);
    text.setLeft(text.right() + Metrics::kSpace3);
    text.setRight(rect.right() - Metrics::kSpace3);
    Paint::line(painter, text, facts(run), m_context.theme.font(TextRole::Secondary), c.text2);
}
