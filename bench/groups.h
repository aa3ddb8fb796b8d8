// The groups of benchmarks; each registers its own. Every one reports frames
// (or instances) as items, so that the time of one item can be compared.
#pragma once

namespace mirelon::bench {

void registerReferences(); // copy, and the chains that bound the core
void registerCore();       // every kernel that runs here
void registerInstances();  // the built plug-in as a host loads it
void registerClap();       // the same as CLAP plug-in
void registerLv2();        // the built LV2 plug-in
void registerLv2Peers();   // those of the known peers that are installed
void registerLadspaPeers();

} // namespace mirelon::bench
