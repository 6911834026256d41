# SPDX-License-Identifier: MIT
"""Tries mutants of the sources, one at a time, and counts those that the tests kill."""
import argparse
import os
import pathlib
import sys
import threading
import time

import mutants
from workshop import OutsideWorkshop, Trouble, Workshop

_HERE = pathlib.Path(__file__).resolve().parent
_ROOT = _HERE.parent.parent
_LEAST = 97.0
_LEAST_OUTSIDE = 50.0


def main():
    arguments = _parse()
    sources = _read_sources(_ROOT / 'src')
    _check_equivalent(sources)
    planned = list(enumerate(mutants.plan(sources, arguments.total), 1))
    if arguments.only:
        planned = [each for each in planned if any(part in each[1].path for part in arguments.only)]
    if arguments.mutant:
        planned = [each for each in planned if each[0] in arguments.mutant]
    if arguments.count and arguments.count < len(planned):
        planned = mutants.sample(planned, arguments.count)
    if not planned:
        sys.exit('mutate: there is no such mutant')
    if arguments.list:
        for number, mutant in planned:
            print(_describe(number, mutant))
        return
    began = time.monotonic()
    try:
        results = Trial(planned, sources, arguments.jobs, OutsideWorkshop, 'outside-').run()
        if not arguments.outside:
            missed = [(number, mutant) for number, mutant in planned
                      if results[number][1] == 'survived']
            if missed:
                results.update(Trial(missed, sources, arguments.jobs, Workshop, '').run())
    except Trouble as trouble:
        sys.exit(f'mutate: {trouble}')
    seconds = time.monotonic() - began
    sys.exit((_report_outside if arguments.outside else _report)(results, seconds))


def _parse():
    parser = argparse.ArgumentParser(prog='scripts/mutate', description=(
        'Changes the sources in one place at a time, in copies of the tree under build/mutate, '
        'and counts how many of these mutants the tests of the Linux build kill. The mutants are '
        'spread evenly over files and kinds, and stay the same as long as the sources do. Fails '
        'if a mutant survives that scripts/mutations/equivalent.txt does not explain, or if the '
        f'tests kill less than {_LEAST:g} % of 100 mutants or more.'))
    parser.add_argument('--count', type=int, metavar='N',
                        help='try N of the mutants, spread evenly')
    parser.add_argument('--only', metavar='FILE', action='append',
                        help='try only mutants of files with FILE in their path')
    parser.add_argument('--mutant', type=int, metavar='N', action='append',
                        help='try only mutant number N')
    parser.add_argument('--outside', action='store_true',
                        help='run only the tests that need nothing but the module; fails if they '
                        f'kill less than {_LEAST_OUTSIDE:g} %%')
    parser.add_argument('--list', action='store_true', help='list the mutants without trying them')
    parser.add_argument('--total', type=int, default=290, metavar='N',
                        help='make about N mutants in all (290)')
    parser.add_argument('--jobs', type=int, metavar='N',
                        help='use N copies of the tree (default: one for each processor, or a '
                        'single one for less than 40 mutants)')
    return parser.parse_args()


def _read_sources(folder):
    """All sources by name, except the files that the Linux build doesn't have."""
    paths = [path for path in sorted((*folder.rglob('*.cpp'), *folder.rglob('*.h')))
             if not path.stem.endswith('_windows')]
    enumerations = mutants.enumerations((folder / 'gentl' / 'gentl.h').read_text())
    texts = {str(path.relative_to(folder)): path.read_text() for path in paths}
    values_missing = mutants.values_missing(texts.values())
    return {name: mutants.Source(name, text, enumerations, values_missing)
            for name, text in texts.items()}


def _describe(number, mutant):
    return f'{number:4} {mutant.path}:{mutant.line} {mutant.kind}\n' \
           f'       - {mutant.before}\n       + {mutant.after}' + _hidden_part(mutant)


def _hidden_part(mutant):
    """The change itself, if the first line doesn't show it."""
    if mutant.before != mutant.after:
        return ''
    return f'\n       ({" ".join(mutant.was.split())} -> {" ".join(mutant.text.split())})'


def _read_equivalent():
    """The keys of the explained mutants. Lines of an explanation are indented."""
    path = _HERE / 'equivalent.txt'
    lines = path.read_text().splitlines() if path.exists() else []
    return {line for line in lines if line and not line.startswith((' ', '#'))}


def _check_equivalent(sources):
    """Exits if a mutant is explained that can't be made any more."""
    possible = {mutant.key() for source in sources.values() for mutant in source.mutants}
    outdated = sorted(_read_equivalent() - possible)
    if outdated:
        sys.exit('mutate: equivalent.txt explains mutants that cannot be made any more:\n' +
                 '\n'.join(outdated))


class Trial:
    def __init__(self, planned, sources, jobs, make_workshop, folder):
        self.sources = sources
        self.make_workshop = make_workshop
        self.folder = folder
        self.total = len(planned)
        processors = os.cpu_count() or 1
        jobs = jobs or (processors if self.total >= 40 else 1)
        self.threads = max(1, processors // jobs)
        self.results = {}
        self.lock = threading.Lock()
        self.groups = {}
        for turn, (number, mutant) in enumerate(planned):
            # A file that everything includes takes longest, so all copies share it.
            part = turn % jobs if mutant.path.endswith(('gentl.h', 'log_text.h')) else 0
            self.groups.setdefault((mutant.path, part), []).append((number, mutant))
        self.jobs = min(jobs, len(self.groups))
        self.trouble = None

    def run(self):
        """For each mutant's number, the mutant and its outcome."""
        workers = [threading.Thread(target=self._work, args=(number,), daemon=True)
                   for number in range(self.jobs)]
        for worker in workers:
            worker.start()
        for worker in workers:
            worker.join()
        if self.trouble is not None:
            raise self.trouble
        return self.results

    def _work(self, number):
        try:
            workshop = self.make_workshop(
                _ROOT, _ROOT / 'build' / 'mutate' / f'{self.folder}{number}', self.threads)
            workshop.prepare()
            while (group := self._next_group()) is not None:
                for mutant_number, mutant in group:
                    self._try(workshop, mutant_number, mutant)
                workshop.restore()
            if self.trouble is None:  # the copy is what it was
                workshop.check()
        except (Trouble, OSError) as trouble:
            with self.lock:
                self.trouble = self.trouble or Trouble(trouble)

    def _next_group(self):
        """The mutants of one file, so that its dependents are rebuilt once; longest list first."""
        with self.lock:
            if self.trouble is not None or not self.groups:
                return None
            return self.groups.pop(max(self.groups, key=lambda key: (len(self.groups[key]), key)))

    def _try(self, workshop, number, mutant):
        if self.trouble is not None:
            return
        began = time.monotonic()
        outcome, by = workshop.try_mutant(mutant, self.sources[mutant.path].text)
        with self.lock:
            self.results[number] = mutant, outcome
            print(f'[{len(self.results)}/{self.total}] {number} {outcome}'
                  f'{f" by {by}" if by else ""}: {mutant.path}:{mutant.line} {mutant.kind}'
                  f' ({time.monotonic() - began:.1f} s)', flush=True)


def _report_outside(results, seconds):
    refused = sum(outcome == 'refused' for _, outcome in results.values())
    missed = sum(outcome == 'survived' for _, outcome in results.values())
    built = len(results) - refused
    print(f'{built} mutants, {built - missed} killed by the tests that need only the module; '
          f'{refused} more refused by the compiler; {seconds:.0f} s')
    return built == 0 or 100 * (built - missed) < _LEAST_OUTSIDE * built


def _report(results, seconds):
    equivalent = _read_equivalent()
    survivors = sorted((number, mutant) for number, (mutant, outcome) in results.items()
                       if outcome == 'survived')
    refused = sum(outcome == 'refused' for _, outcome in results.values())
    built = len(results) - refused
    killed = built - len(survivors)
    explained = [each for each in survivors if each[1].key() in equivalent]
    for number, mutant in survivors:
        print(f'survived{", equivalent" if mutant.key() in equivalent else ""}:\n'
              f'{_describe(number, mutant)}')
        if mutant.key() not in equivalent:
            print(f'       {mutant.key()}')
    score = 100 * killed / built if built else 100.0
    print(f'{built} mutants, {killed} killed ({score:.1f} %), '
          f'{len(survivors)} survived ({len(explained)} of them equivalent); '
          f'{refused} more refused by the compiler; {seconds:.0f} s')
    return len(explained) < len(survivors) or built >= 100 and score < _LEAST


main()
