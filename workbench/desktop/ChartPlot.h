#pragma once

// The one place that names the plotting library's header, which is written with the toolkit's keywords.
#include "workbench/desktop/QtWidgets.h"

#define signals Q_SIGNALS
#define slots Q_SLOTS
#define foreach Q_FOREACH
#include <qcustomplot.h>
#undef signals
#undef slots
#undef foreach
