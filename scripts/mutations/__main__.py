"""Plants faults in the sources, one at a time, and counts those that the tests catch."""
import argparse
import os
import pathlib
import sys
import threading
import time

import faults
from workshop import OutsideWorkshop, Trouble, Workshop

_HERE = pathlib.Path(__file__).resolve().parent
_ROOT = _HERE.parent.parent
_LEAST = 97.0
_LEAST_OUTSIDE = 50.0


def main():
    arguments = _parse()
    sources = _read_sources(_ROOT / 'src')
    _check_harmless(sources)
    planned = list(enumerate(faults.plan(sources, arguments.total), 1))
    if arguments.only:
        planned = [each for each in planned if any(part in each[1].path for part in arguments.only)]
    if arguments.fault:
        planned = [each for each in planned if each[0] in arguments.fault]
    if arguments.count and arguments.count < len(planned):
        planned = faults.sample(planned, arguments.count)
    if not planned:
        sys.exit('mutate: there is no such fault')
    if arguments.list:
        for number, fault in planned:
            print(_describe(number, fault))
        return
    began = time.monotonic()
    try:
        results = Trial(planned, sources, arguments.jobs, OutsideWorkshop, 'outside-').run()
        if not arguments.outside:
            missed = [(number, fault) for number, fault in planned
                      if results[number][1] == 'survived']
            if missed:
                results.update(Trial(missed, sources, arguments.jobs, Workshop, '').run())
    except Trouble as trouble:
        sys.exit(f'mutate: {trouble}')
    seconds = time.monotonic() - began
    sys.exit((_report_outside if arguments.outside else _report)(results, seconds))


def _parse():
    parser = argparse.ArgumentParser(prog='scripts/mutate', description=(
        'Plants faults in the sources, one at a time, in copies of the tree under build/mutate, '
        'and counts those that the tests of the Linux build catch. The faults are generated from '
        'the sources, spread evenly over files and kinds, and the same as long as the sources '
        'are. Fails if a fault survives without an explanation in '
        f'scripts/mutations/harmless.txt, or if, of 100 or more, fewer than {_LEAST:g} % are '
        'caught.'))
    parser.add_argument('--count', type=int, metavar='N', help='try N of the faults, evenly spread')
    parser.add_argument('--only', metavar='FILE', action='append',
                        help='try those in files with FILE in their path')
    parser.add_argument('--fault', type=int, metavar='N', action='append', help='try number N')
    parser.add_argument('--outside', action='store_true',
                        help='run nothing but the tests that need the module alone; fails if they '
                        f'catch fewer than {_LEAST_OUTSIDE:g} %%')
    parser.add_argument('--list', action='store_true', help='list the faults, try none')
    parser.add_argument('--total', type=int, default=290, metavar='N',
                        help='plan about N faults in all (290)')
    parser.add_argument('--jobs', type=int, metavar='N',
                        help='copies of the tree (one a processor, or one for less than 40 faults)')
    return parser.parse_args()


def _read_sources(folder):
    """The other system's files are no part of the Linux build."""
    paths = [path for path in sorted((*folder.rglob('*.cpp'), *folder.rglob('*.h')))
             if not path.stem.endswith('_windows')]
    enumerations = faults.enumerations((folder / 'gentl' / 'gentl.h').read_text())
    names = {str(path.relative_to(folder)): path for path in paths}
    return {name: faults.Source(name, path.read_text(), enumerations)
            for name, path in names.items()}


def _describe(number, fault):
    return f'{number:4} {fault.path}:{fault.line} {fault.kind}\n' \
           f'       - {fault.before}\n       + {fault.after}' + _hidden_part(fault)


def _hidden_part(fault):
    """A change that the first line does not show."""
    if fault.before != fault.after:
        return ''
    return f'\n       ({" ".join(fault.was.split())} -> {" ".join(fault.text.split())})'


def _read_harmless():
    """Each explained survivor's key; the lines of its explanation are indented."""
    path = _HERE / 'harmless.txt'
    lines = path.read_text().splitlines() if path.exists() else []
    return {line for line in lines if line and not line.startswith((' ', '#'))}


def _check_harmless(sources):
    """An explanation goes with the line that it explains."""
    possible = {fault.key() for source in sources.values() for fault in source.faults}
    outdated = sorted(_read_harmless() - possible)
    if outdated:
        sys.exit('mutate: harmless.txt explains what cannot be planted any more:\n' +
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
        for turn, (number, fault) in enumerate(planned):
            # What everything is built from takes longest: all copies take part.
            part = turn % jobs if fault.path.endswith('gentl.h') else 0
            self.groups.setdefault((fault.path, part), []).append((number, fault))
        self.jobs = min(jobs, len(self.groups))
        self.trouble = None

    def run(self):
        """By each fault's number, the fault and what became of it."""
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
                for fault_number, fault in group:
                    self._try(workshop, fault_number, fault)
                workshop.restore()
            if self.trouble is None:  # nothing was left behind that the tests could have caught
                workshop.check()
        except (Trouble, OSError) as trouble:
            with self.lock:
                self.trouble = self.trouble or Trouble(trouble)

    def _next_group(self):
        """A file's faults together, the longest lists first: what it touches is built again once."""
        with self.lock:
            if self.trouble is not None or not self.groups:
                return None
            return self.groups.pop(max(self.groups, key=lambda key: (len(self.groups[key]), key)))

    def _try(self, workshop, number, fault):
        if self.trouble is not None:
            return
        began = time.monotonic()
        outcome, by = workshop.try_fault(fault, self.sources[fault.path].text)
        with self.lock:
            self.results[number] = fault, outcome
            print(f'[{len(self.results)}/{self.total}] {number} {outcome}'
                  f'{f" by {by}" if by else ""}: {fault.path}:{fault.line} {fault.kind}'
                  f' ({time.monotonic() - began:.1f} s)', flush=True)


def _report_outside(results, seconds):
    refused = sum(outcome == 'refused' for _, outcome in results.values())
    missed = sum(outcome == 'survived' for _, outcome in results.values())
    planted = len(results) - refused
    print(f'{planted} faults planted, {planted - missed} caught by the tests from outside alone; '
          f'{refused} more refused by the compiler; {seconds:.0f} s')
    return planted == 0 or 100 * (planted - missed) < _LEAST_OUTSIDE * planted


def _report(results, seconds):
    harmless = _read_harmless()
    survivors = sorted((number, fault) for number, (fault, outcome) in results.items()
                       if outcome == 'survived')
    refused = sum(outcome == 'refused' for _, outcome in results.values())
    planted = len(results) - refused
    caught = planted - len(survivors)
    explained = [each for each in survivors if each[1].key() in harmless]
    for number, fault in survivors:
        print(f'survived{", as explained" if fault.key() in harmless else ""}:\n'
              f'{_describe(number, fault)}')
        if fault.key() not in harmless:
            print(f'       {fault.key()}')
    rate = 100 * caught / planted if planted else 100.0
    print(f'{planted} faults planted, {caught} caught ({rate:.1f} %), '
          f'{len(survivors)} survived ({len(explained)} as explained); '
          f'{refused} more refused by the compiler; {seconds:.0f} s')
    return len(explained) < len(survivors) or planted >= 100 and rate < _LEAST


main()
