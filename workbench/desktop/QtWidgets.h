#pragma once

// Precompiled for this folder: the one place that names the toolkit's headers.
#include <QtWidgets/QtWidgets>
