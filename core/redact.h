// Settings documents as the debug console may show them.
#pragma once

// A copy of a JSON text in which the values of members named "key" and "secret" are starred out, as
// are those of members whose name is spelled with escapes. The caller frees it with free(). Null
// where memory is short.
char* redact_account(const char* document);
