#pragma once

#include <QItemSelectionModel>

class OutlineView;

/// Makes every selection that Qt or assistive technology asks for a proposal, which the outline
/// view may change or refuse as it does those of the mouse and the keyboard.
class OutlineSelectionModel : public QItemSelectionModel
{
    Q_OBJECT

public:
    OutlineSelectionModel(QAbstractItemModel *model, OutlineView *view);

    using QItemSelectionModel::select;
    void select(const QItemSelection &selection, SelectionFlags command) override;
    void clear() override;

private:
    OutlineView *m_view;
};
