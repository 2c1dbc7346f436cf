// SPDX-License-Identifier: Apache-2.0
#include "display/EntryTextAttributes.h"

EntryTextAttributes EntryTextAttributes::forState(RegistryState registryState, FindState findState,
                                                  bool isRootEntry)
{
    EntryTextAttributes attributes;
    attributes.isBold = findState == FindStateMatching;
    attributes.isSlanted = isRootEntry;
    if (findState == FindStateNotMatching)
        attributes.color = Color::LightGray;
    else if (findState == FindStateParentOfMatch)
        attributes.color = Color::DarkGray;
    if (registryState == RegistryStateNew) {
        attributes.color = Color::New;
        attributes.isUnderlined = true;
    } else if (registryState == RegistryStateTerminated) {
        attributes.color = Color::Terminated;
        attributes.isStruckOut = true;
    }
    return attributes;
}
