// The hub handler, named here so that the endpoint can default to it without its definition.
#pragma once

class BQLColloqVexilProxy;
