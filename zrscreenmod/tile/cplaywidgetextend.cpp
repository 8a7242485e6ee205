#include "cplaywidgetextend.h"

bool CPlayWidgetExtend::SetPersonInfo(tagPersonInfo* pPerson, bool)
{
    if (!pPerson)
        return CPlayWidget::SetPersonInfo(nullptr, false);
    const bool changed =
        pPerson->bPreview ? bindPerson(pPerson) : CPlayWidget::SetPersonInfo(pPerson, false);
    StartShow();
    return changed;
}
