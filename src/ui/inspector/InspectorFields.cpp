#include "ui/inspector/InspectorFields.h"

#include "core/library/LibraryStore.h"
#include "core/library/quicklists/QuickLists.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Preferences.h"
#include "ui/cells/EditMark.h"
#include "ui/inspector/InspectorField.h"
#include "ui/text/Texts.h"

#include <QApplication>
#include <QGridLayout>

namespace {

struct Place {
    TagField field;
    int row;
    int column;
    int span;
};

constexpr Place kPlaces[]{
    {TagField::Title, 0, 0, 2},       {TagField::Artist, 1, 0, 2}, {TagField::Album, 2, 0, 2},
    {TagField::AlbumArtist, 3, 0, 2}, {TagField::Genre, 4, 0, 2},  {TagField::Year, 5, 0, 1},
    {TagField::Track, 5, 1, 1},       {TagField::Tempo, 6, 0, 1},  {TagField::MusicalKey, 6, 1, 1},
    {TagField::Comment, 7, 0, 2},
};
constexpr int kGap = 6;

} // namespace

InspectorFields::InspectorFields(const WindowContext& context, InspectorModel& model, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_model(model)
{
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(kGap);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    for (size_t i = 0; i < m_fields.size(); ++i) {
        const Place& place = kPlaces[i];
        const auto lines =
            place.field == TagField::Comment ? InspectorField::Lines::Several : InspectorField::Lines::One;
        m_fields[i] = new InspectorField(context.theme, place.field, lines, this);
        grid->addWidget(m_fields[i], place.row, place.column, 1, place.span);
        connectField(*m_fields[i]);
    }
    connect(qApp, &QApplication::focusChanged, this, &InspectorFields::showEditing);
    retranslate();
}

InspectorFields::~InspectorFields()
{
    disconnect(qApp, nullptr, this, nullptr);
    if (m_isEditing)
        m_context.store.workspace().setEditingMetadata(false);
}

void InspectorFields::connectField(InspectorField& field)
{
    connect(&field, &InspectorField::edited, this, [this, &field](const QString& text) {
        m_model.edit(field.field(), text);
        emit touched();
    });
    connect(&field, &InspectorField::revertWanted, this, [this, &field] {
        m_model.revert(field.field());
        emit touched();
    });
    connect(&field, &InspectorField::saveWanted, this, &InspectorFields::saveWanted);
    connect(&field, &InspectorField::leaveWanted, this, &InspectorFields::leaveWanted);
}

const std::array<TagField, 10>& InspectorFields::order()
{
    static const std::array<TagField, 10> kOrder = [] {
        std::array<TagField, 10> order{};
        std::transform(std::begin(kPlaces), std::end(kPlaces), order.begin(), [](const Place& p) { return p.field; });
        return order;
    }();
    return kOrder;
}

InspectorField& InspectorFields::field(TagField field) const
{
    return **std::find_if(m_fields.begin(), m_fields.end(),
                          [field](const InspectorField* each) { return each->field() == field; });
}

bool InspectorFields::isEditing() const
{
    const QWidget* focused = QApplication::focusWidget();
    return focused && isAncestorOf(focused);
}

/// The program's commands of a single key have to know that somebody types.
void InspectorFields::showEditing()
{
    if (std::exchange(m_isEditing, isEditing()) == m_isEditing)
        return;
    m_context.store.workspace().setEditingMetadata(m_isEditing);
    if (!m_isEditing)
        return;
    QStringList genres = m_context.store.quickLists().genres();
    genres.removeDuplicates();
    field(TagField::Genre).setSuggestions(genres);
}

void InspectorFields::refresh()
{
    const bool keepsOthers = m_context.store.preferences().keepsOtherTagEntries.get();
    const bool isWritable = m_model.writableCount() > 0;
    for (InspectorField* each : m_fields) {
        const TagField field = each->field();
        InspectorField::State state;
        state.text = m_model.text(field);
        state.isTouched = m_model.isTouched(field);
        state.isEnabled = isWritable;
        if (state.isTouched)
            state.hint = Texts::localized(QStringLiteral("Будет очищено"));
        else if (m_model.isMixed(field))
            state.hint = Texts::localized(QStringLiteral("Разные значения"));
        else if (const QString value = m_model.inFile(field); !value.isEmpty())
            state.hint = VelmoraLocalization::format(QStringLiteral("%@ — в файле"), {value});
        if (m_model.isUnwritable(field) && !keepsOthers)
            state.remark = Texts::localized(QStringLiteral("не записывается"));
        each->setState(state);
    }
}

void InspectorFields::retranslate()
{
    for (size_t i = 0; i < m_fields.size(); ++i)
        m_fields[i]->setWords(EditMark::fieldName(kPlaces[i].field),
                              Texts::localized(QStringLiteral("Отменить правку")));
}
