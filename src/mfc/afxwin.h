// Includes the whole framework.
#pragma once

#include "mfc/app.h"
#include "mfc/collections.h"
#include "mfc/controls.h"
#include "mfc/property_sheet.h"
