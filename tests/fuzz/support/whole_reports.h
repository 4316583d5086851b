// Whether the reports that the agent builds are whole. One takes as long as fifty runs, so targets
// that are about something else leave them empty.
#pragma once

extern bool whole_reports;
