#pragma once

#include "ui/context/WindowContext.h"
#include "ui/inspector/InspectorModel.h"

#include <QWidget>

#include <array>

class InspectorField;

/// The ten fields in their visual order, bound to a model. Thread: main.
class InspectorFields : public QWidget {
    Q_OBJECT

public:
    /// \param model outlives it.
    InspectorFields(const WindowContext& context, InspectorModel& model, QWidget* parent = nullptr);
    ~InspectorFields() override;

    /// Shows what the model says.
    void refresh();
    /// Takes the language of the interface over.
    void retranslate();
    /// Owned by the panel.
    InspectorField& field(TagField field) const;
    /// Whether one of the fields has the keys.
    bool isEditing() const;

    /// Top to bottom, left to right.
    static const std::array<TagField, 10>& order();

Q_SIGNALS:
    /// An edit was typed or taken back.
    void touched();
    /// Return in any of them.
    void saveWanted();
    /// Escape where there is nothing to take back.
    void leaveWanted();

private:
    void connectField(InspectorField& field);
    void showEditing();

    WindowContext m_context;
    InspectorModel& m_model;
    std::array<InspectorField*, 10> m_fields{}; ///< in order()
    bool m_isEditing = false;
};
