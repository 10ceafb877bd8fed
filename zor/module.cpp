// The module's exported constants and module-wide tables, defined here in their order of
// construction (static initialisation runs in order of definition within one translation unit).
