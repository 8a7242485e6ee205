#include "cplaywidgetextend.h"

#include "qdlgplayinfo.h"

bool CPlayWidgetExtend::SetPersonInfo(tagPersonInfo* pPerson, bool)
{
    if (!pPerson)
        return CPlayWidget::SetPersonInfo(nullptr, false);
    const bool changed =
        pPerson->bPreview ? bindPerson(pPerson) : CPlayWidget::SetPersonInfo(pPerson, false);
    followNetwork();
    StartShow();
    return changed;
}

void CPlayWidgetExtend::followNetwork()
{
    const tagPersonInfo* const person = GetPersonInfo();
    if (person && person->pWidget)
        playInfo()->copyNetStatus(*person->pWidget->playInfo());
}
