// The ID page of the second-mailer wizard, which uses it instead of CSetMailerID.
#pragma once

#include "mfc/afxwin.h"
#include "resources/resource.h"
#include "wizard/wizard_data.h"

// Address and sender of an account that isn't named after the ID. The domain can be typed.
class CSet2ndMailerID : public CPropertyPage {
  DECLARE_DYNAMIC(CSet2ndMailerID)

public:
  WizardData *data = nullptr;

  CSet2ndMailerID() : CPropertyPage(IDD_SET_2ND_MAILER_ID, 0) {}

protected:
  BOOL OnInitDialog() override;
  BOOL OnSetActive() override;
  LRESULT OnWizardBack() override;
  LRESULT OnWizardNext() override;
};
