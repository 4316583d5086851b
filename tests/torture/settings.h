// One settings document that reaches every handler.
#pragma once

extern const char* const whole_settings;
