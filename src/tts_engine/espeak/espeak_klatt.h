// Resetting espeak-ng's Klatt generators. Called under the lock around espeak-ng.
#ifndef TTS_ENGINE_ESPEAK_ESPEAK_KLATT_H
#define TTS_ENGINE_ESPEAK_ESPEAK_KLATT_H

// They are as when espeak-ng began. May throw std::bad_alloc (espeak_stepper.h).
void espeak_klatt_reset(void);

#endif
