/* SPDX-License-Identifier: Apache-2.0 */
/* Debug log of the platform. */
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

/* Writes one line. level: 1 failures and milestones, 2 conditions that may pass, 4 trace, 9 the
 * finest. module: number of the writing program or component. May be called from any thread. */
void tracelog_printf(int level, int module, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

#ifdef __cplusplus
}
#endif
