// SPDX-License-Identifier: Apache-2.0

/** Exit codes of the converter; the host turns them into its own error kinds. */
export const ExitCode = Object.freeze({
  Done: 0,
  Crash: 1,
  WrongUse: 2,
  Input: 3,
  Reader: 4,
  Output: 5,
});

/** A failure with a message for the user and the exit code that goes with it. */
export class ConvertError extends Error {
  constructor(exitCode, message) {
    super(message);
    this.exitCode = exitCode;
  }
}
