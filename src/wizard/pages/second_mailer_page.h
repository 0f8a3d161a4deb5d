// The page of the second-mailer wizard that stands in the place of CSetMailerID.
#pragma once

#include "wizard/pages/page_parts.h"
#include "wizard/wizard_data.h"

// Address and sender, of an account that isn't named after the ID: the domain can be typed.
class CSet2ndMailerID : public CPropertyPage {
  DECLARE_DYNAMIC(CSet2ndMailerID)

public:
  WizardData *data = nullptr;

  CSet2ndMailerID();

protected:
  BOOL OnInitDialog() override;
  BOOL OnSetActive() override;
  LRESULT OnWizardBack() override;
  LRESULT OnWizardNext() override;
};
