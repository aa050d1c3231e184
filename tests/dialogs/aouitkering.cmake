# SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
# SPDX-License-Identifier: Apache-2.0
# The disability benefit schedule dialog: its schedule rules without a form, and the form driven as
# a user does against the three kinds of owner record of the reference host.
if(TARGET zarnoveld_model)
    vandrel_add_test(tst_aouitkering SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_aouitkering.cpp
        LIBS pensioen_dialogs zarnoveld_model TIMEOUT 120)
endif()
